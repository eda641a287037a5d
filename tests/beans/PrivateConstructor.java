package beans;

/** What is a class whose constructor is private? */
public class PrivateConstructor {
  private PrivateConstructor() {}

  public static PrivateConstructor make() { return new PrivateConstructor(); }
}
