package processing.app;

/** Whoever shows the outcome of a build or an upload: the status line of an editor window. */
public interface RunnerListener {
  /** Shows words about something that went wrong. */
  void statusError(String message);

  /** Shows what an exception says about something that went wrong. */
  void statusError(Exception cause);

  /** Shows words that report progress or success. */
  void statusNotice(String message);
}
