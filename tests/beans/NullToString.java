package beans;

/** What becomes of an object whose text is null? */
public class NullToString {
  @Override
  public String toString() { return null; }
}
