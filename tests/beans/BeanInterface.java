package beans;

/** What is an interface, and do its default methods count? */
public interface BeanInterface {
  int value();
  default int twice() { return 2 * value(); }

  static int never() { return 0; }
}
