package beans;

/** Are bridges left out, and inherited accessors in? */
public class GenericChild extends GenericBase<String> implements Comparable<GenericChild> {
  @Override
  public String getValue() { return "child " + value; }

  @Override
  public void setValue(String value) { this.value = value + "!"; }

  @Override
  public String describe(String other) { return "child " + other; }

  @Override
  public int compareTo(GenericChild other) { return value.compareTo(other.value); }
}
