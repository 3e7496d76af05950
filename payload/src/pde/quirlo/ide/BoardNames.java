package quirlo.ide;

import java.util.Locale;

/**
 * The boards of the package by the identifiers of boards.txt. Menus and messages take the names
 * from here, since they are needed before any board file has been read.
 */
public enum BoardNames {
  QUIRLO41("quirlo41", "Quirlo 4.1"),
  QUIRLO40("quirlo40", "Quirlo 4.0"),
  QUIRLOMM("quirloMM", "Quirlo MM"),
  QUIRLO36("quirlo36", "Quirlo 3.6"),
  QUIRLO35("quirlo35", "Quirlo 3.5"),
  QUIRLO31("quirlo31", "Quirlo 3.1"),
  QUIRLO30("quirlo30", "Quirlo 3.0"),
  QUIRLOLC("quirloLC", "Quirlo LC"),
  QUIRLOPP2("quirlopp2", "Quirlo++ 2.0"),
  QUIRLO2("quirlo2", "Quirlo 2.0");

  private final String id;
  private final String title;

  BoardNames(String id, String title) {
    this.id = id;
    this.title = title;
  }

  /** The identifier in boards.txt, in exact case. */
  public String id() {
    return id;
  }

  /** The name shown to the user. */
  public String title() {
    return title;
  }

  /** True for any identifier of the package, however its letters are cased. */
  public static boolean isQuirlo(String board) {
    if (board == null) return false;
    String wanted = board.toLowerCase(Locale.ROOT);
    for (BoardNames name : values()) {
      if (name.id.toLowerCase(Locale.ROOT).equals(wanted)) return true;
    }
    return false;
  }
}
