package cc.arduino.view;

import javax.swing.event.MenuEvent;
import javax.swing.event.MenuListener;

/** A menu listener that ignores everything, so that a menu overrides only the event it fills on. */
public class StubMenuListener implements MenuListener {
  @Override
  public void menuSelected(MenuEvent event) {}

  @Override
  public void menuDeselected(MenuEvent event) {}

  @Override
  public void menuCanceled(MenuEvent event) {}
}
