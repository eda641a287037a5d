package beans;

/** What is a class without a no-argument constructor? */
public class NoDefaultConstructor {
  public NoDefaultConstructor(int value) {}
}
