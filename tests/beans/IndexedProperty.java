package beans;

/** Which accessors by index stand? */
public class IndexedProperty {
  private final String[] items = {"a", "b", "c"};

  public String[] getItems() { return items; }
  public void setItems(String[] values) { System.arraycopy(values, 0, items, 0, items.length); }
  public String getItems(int index) { return items[index]; }
  public void setItems(int index, String value) { items[index] = value; }

  /** Only by element, all three kinds. */
  public boolean isFlag(int index) { return index == 1; }
  public boolean getFlag(int index) { return index == 2; }
  public void setFlag(int index, boolean value) {}

  /** The plain type is no array of this one, so these are regular methods. */
  public int getSize() { return items.length; }
  public int getSize(int index) { return items[index].length(); }
  public void setSize(int index, int size) {}

  /** Another type than the reader's: a regular method. */
  public void setItems(int index, Object value) { items[index] = "object " + value; }
}
