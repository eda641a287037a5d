package beans;

/** Did the static initialiser run? */
public class StaticInitRecorder {
  static {
    System.setProperty("beans.StaticInitRecorder", "ran");
  }
}
