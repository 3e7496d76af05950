package processing.app.debug;

/** Takes the text of a running tool, piece by piece; a piece need not be a whole line. */
public interface MessageConsumer {
  void message(String text);
}
