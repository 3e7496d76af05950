package cc.arduino.contributions;

import cc.arduino.utils.Progress;

/** Stands where a listener is asked for and nobody watches. */
public class NoopProgressListener implements ProgressListener {
  @Override
  public void onProgress(Progress progress) {}
}
