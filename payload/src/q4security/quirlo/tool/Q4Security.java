package quirlo.tool;

import javax.swing.JOptionPane;
import processing.app.Editor;
import processing.app.tools.Tool;

/** The Tools menu's entry for the lockable boards. The sample only says what would be here. */
public class Q4Security implements Tool {
  private Editor editor;

  @Override
  public void init(Editor editor) {
    this.editor = editor;
  }

  @Override
  public String getMenuTitle() {
    return "Quirlo 4 Security";
  }

  @Override
  public void run() {
    JOptionPane.showMessageDialog(
        editor, "The sample payload carries no security tool.", getMenuTitle(),
        JOptionPane.INFORMATION_MESSAGE);
  }
}
