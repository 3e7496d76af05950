package quirlo.ide;

import java.io.File;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;

/** The version of the package that is installed in this copy of the IDE, from its marker file. */
public final class PackageVersion {
  private static final String MARKER = "lib/quirloduino.txt";

  private PackageVersion() {}

  /** The text of the marker, or an empty text if there is none, as after an incomplete install. */
  public static String read(File ideFolder) {
    try {
      byte[] bytes = Files.readAllBytes(new File(ideFolder, MARKER).toPath());
      return new String(bytes, StandardCharsets.US_ASCII).trim();
    } catch (IOException missing) {
      return "";
    }
  }
}
