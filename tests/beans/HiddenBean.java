package beans;

/** What is a class that is not public? */
class HiddenBean implements BeanInterface {
  public HiddenBean() {}

  @Override
  public int value() { return 21; }
}
