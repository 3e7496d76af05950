import java.awt.Component;
import java.awt.Container;
import java.awt.Dialog;
import java.awt.Frame;
import java.awt.Point;
import java.awt.Rectangle;
import java.awt.Robot;
import java.awt.Toolkit;
import java.awt.Window;
import java.awt.event.InputEvent;
import java.io.File;
import java.io.PrintStream;
import java.util.concurrent.Callable;
import java.util.concurrent.FutureTask;
import javax.imageio.ImageIO;
import javax.swing.JButton;
import javax.swing.JFrame;
import javax.swing.JMenu;
import javax.swing.JMenuBar;
import javax.swing.JMenuItem;
import javax.swing.JOptionPane;
import javax.swing.SwingUtilities;

/**
 * Starts the IDE and uses it as a person would, with the pointer: opens Tools > Board and the menu of
 * our boards, then the entry of ours in Tools. Prints what stands there, a line for each thing, and
 * saves a picture of either. Ends the IDE. Arguments: the folder of pictures, the IDE's folder.
 */
public class ShowIde {
  private static final int LONGEST_WAIT = 120_000; // milliseconds
  private static final PrintStream out = System.out; // the IDE shows in its window what comes after
  private static Robot robot;
  private static File pictures;

  public static void main(String[] arguments) throws Exception {
    pictures = new File(arguments[0]);
    File folder = new File(arguments[1]);
    robot = new Robot();
    robot.setAutoDelay(50);
    processing.app.Base.main(new String[0]);

    JFrame editor = await("the IDE's window", ShowIde::editor);
    out.println("window: " + editor.getTitle().replaceAll(".* \\| ", ""));
    JMenu tools = menuOf(editor.getJMenuBar(), "Tools");
    click(tools);
    JMenu board = (JMenu) await("Tools > Board", () -> itemOf(tools, "Board"));
    out.println("board: " + board.getText());
    click(board);
    JMenu ours = (JMenu) await("our boards", () -> itemOf(board, "Quirlo"));
    out.println("menu: " + ours.getText());
    moveTo(ours);
    await("the menu of our boards", () -> shown(ours));
    for (Component item : ours.getMenuComponents()) {
      JMenuItem entry = (JMenuItem) item;
      out.println((entry.isSelected() ? "picked: " : "listed: ") + entry.getText());
    }
    robot.delay(500);
    save(new File(pictures, "boards.png"));

    JMenuItem entry = await("the entry in Tools", () -> itemOf(tools, "Quirlo 4 Security"));
    moveTo(entry);
    click(entry);
    Dialog dialog = await("the entry's dialog", ShowIde::dialog);
    out.println("dialog: " + dialog.getTitle());
    out.println("says: " + find(dialog, JOptionPane.class).getMessage());
    robot.delay(500);
    save(new File(pictures, "tool.png"));
    click(find(dialog, JButton.class));
    await("the dialog's end", () -> dialog.isShowing() ? null : dialog);

    // The classes that were added are there for the rest of the IDE, and agree with what is installed.
    for (quirlo.ide.BoardNames name : quirlo.ide.BoardNames.values()) {
      out.println("class BoardNames: " + name.title());
    }
    out.println("class PackageVersion: " + quirlo.ide.PackageVersion.read(folder));
    out.flush();
    Runtime.getRuntime().halt(0); // the preferences stay as the installer left them
  }

  private static JFrame editor() {
    for (Frame frame : Frame.getFrames()) {
      if (!(frame instanceof JFrame) || !frame.isShowing()) continue;
      JMenuBar bar = ((JFrame) frame).getJMenuBar();
      if (bar != null && menuOf(bar, "Tools") != null) return (JFrame) frame;
    }
    return null;
  }

  private static JMenu menuOf(JMenuBar bar, String name) {
    for (int i = 0; i < bar.getMenuCount(); i++) {
      if (bar.getMenu(i) != null && bar.getMenu(i).getText().equals(name)) return bar.getMenu(i);
    }
    return null;
  }

  /** The item whose text begins so, once it can be seen. */
  private static JMenuItem itemOf(JMenu menu, String beginning) {
    for (Component item : menu.getMenuComponents()) {
      if (!(item instanceof JMenuItem) || !item.isShowing()) continue;
      if (((JMenuItem) item).getText().startsWith(beginning)) return (JMenuItem) item;
    }
    return null;
  }

  private static JMenu shown(JMenu menu) {
    int count = menu.getMenuComponentCount();
    return count > 0 && menu.getMenuComponent(count - 1).isShowing() ? menu : null;
  }

  private static Dialog dialog() {
    for (Window window : Window.getWindows()) {
      if (window instanceof Dialog && window.isShowing()) return (Dialog) window;
    }
    return null;
  }

  private static <T extends Component> T find(Container in, Class<T> kind) {
    for (Component component : in.getComponents()) {
      if (kind.isInstance(component)) return kind.cast(component);
      if (component instanceof Container) {
        T found = find((Container) component, kind);
        if (found != null) return found;
      }
    }
    return null;
  }

  private static <T> T await(String what, Callable<T> look) throws Exception {
    long end = System.currentTimeMillis() + LONGEST_WAIT;
    while (System.currentTimeMillis() < end) {
      FutureTask<T> task = new FutureTask<>(look);
      SwingUtilities.invokeAndWait(task);
      if (task.get() != null) return task.get();
      Thread.sleep(100);
    }
    save(new File(pictures, "failed.png"));
    out.println("waited in vain for " + what);
    out.flush();
    Runtime.getRuntime().halt(1);
    return null;
  }

  private static void moveTo(Component component) {
    Point at = component.getLocationOnScreen();
    robot.mouseMove(at.x + component.getWidth() / 2, at.y + component.getHeight() / 2);
    robot.waitForIdle();
  }

  private static void click(Component component) {
    moveTo(component);
    robot.mousePress(InputEvent.BUTTON1_DOWN_MASK);
    robot.mouseRelease(InputEvent.BUTTON1_DOWN_MASK);
    robot.waitForIdle();
  }

  private static void save(File file) throws Exception {
    Rectangle screen = new Rectangle(Toolkit.getDefaultToolkit().getScreenSize());
    ImageIO.write(robot.createScreenCapture(screen), "png", file);
  }
}
