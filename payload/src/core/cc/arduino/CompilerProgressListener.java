package cc.arduino;

/** Learns how far a build has come. */
public interface CompilerProgressListener {
  /** Takes the part that is done, in percent. */
  void progress(int percent);
}
