package beans;

/** What is a class that cannot be made? */
public abstract class AbstractBean {
  public AbstractBean() {}
  public abstract int value();
}
