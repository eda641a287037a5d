package beans;

/** What becomes of an object that cannot be printed? */
public class ThrowingToString {
  @Override
  public String toString() { throw new IllegalStateException("no text"); }
}
