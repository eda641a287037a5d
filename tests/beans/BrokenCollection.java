package beans;

import java.util.AbstractList;

/** What becomes of a walk that ends in an exception, or in null? */
public class BrokenCollection extends AbstractList<String> {
  private int goodElements = 2;
  private boolean endsInNull;

  public void setGoodElements(int goodElements) { this.goodElements = goodElements; }
  public void setEndsInNull(boolean endsInNull) { this.endsInNull = endsInNull; }

  @Override
  public String get(int index) {
    if (index >= goodElements && !endsInNull) {
      throw new IllegalStateException("element " + index);
    }
    return index < goodElements ? "good " + index : null;
  }

  @Override
  public int size() { return 4; }
}
