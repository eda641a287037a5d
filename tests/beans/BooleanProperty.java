package beans;

/** Which methods named is... are readers? */
public class BooleanProperty {
  private boolean open;

  public boolean isOpen() { return open; }
  public void setOpen(boolean open) { this.open = open; }

  /** Two readers of two types make two rows. */
  public boolean isLevel() { return true; }
  public int getLevel() { return 5; }

  /** No accessor: its result is an object. */
  public Boolean isKnown() { return null; }

  /** One row with both readers. */
  public boolean isShut() { return !open; }
  public boolean getShut() { return !open; }
}
