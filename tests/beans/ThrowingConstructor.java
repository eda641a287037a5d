package beans;

/** What becomes of an exception from the constructor? */
public class ThrowingConstructor {
  public ThrowingConstructor() { throw new IllegalStateException("constructor"); }
}
