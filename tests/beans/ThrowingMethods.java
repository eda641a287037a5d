package beans;

/** What becomes of each kind of throwable? */
public class ThrowingMethods {
  public static class CheckedException extends Exception {
    private static final long serialVersionUID = 1L;

    public CheckedException(String message) { super(message); }
  }

  public static class UnprintableException extends RuntimeException {
    private static final long serialVersionUID = 1L;

    @Override
    public String toString() { throw new IllegalStateException("no text"); }
  }

  public static class NullTextException extends RuntimeException {
    private static final long serialVersionUID = 1L;

    @Override
    public String toString() { return null; }
  }

  public int checked(String message) throws CheckedException {
    throw new CheckedException(message);
  }

  public void unchecked() { throw new IllegalArgumentException("unchecked"); }
  public String error() { throw new AssertionError("error"); }
  public Object nullMessage() { throw new IllegalStateException((String) null); }
  public int unprintable() { throw new UnprintableException(); }
  public int nullText() { throw new NullTextException(); }
  public int stackOverflow() { return stackOverflow() + 1; }

  /** Longer than a VM allows, so it fails at once and leaves the heap as it was. */
  public long[] outOfMemory() { return new long[Integer.MAX_VALUE]; }
  public int fine() { return 1; }
}
