package beans;

/** What becomes of an exception from the static initialiser? */
public class ThrowingInitializer {
  static final int VALUE = Integer.parseInt("no number");
}
