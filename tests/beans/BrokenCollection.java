package beans;

import java.util.Iterator;
import java.util.NoSuchElementException;

/**
 * What becomes of a walk when a part of it throws, lies or gives nothing? And is a class walked
 * that is a collection by its methods alone?
 */
public class BrokenCollection {
  private static final int ELEMENTS = 4;
  private String broken = "";
  private int element;

  /** From now on that part misbehaves; hasNext, next and null do at that element, from 0. */
  public void breakAt(String part, int element) {
    broken = part;
    this.element = element;
  }

  public int size() {
    failIf("size");
    return broken.equals("lying size") ? -1000 : ELEMENTS;
  }

  public Iterator<String> iterator() {
    failIf("iterator");
    return broken.equals("no iterator") ? null : new Elements();
  }

  private void failIf(String part) {
    if (broken.equals(part)) {
      throw new IllegalStateException(part);
    }
  }

  private final class Elements implements Iterator<String> {
    private int at;

    @Override
    public boolean hasNext() {
      if (at == element) {
        failIf("hasNext");
      }
      return at < ELEMENTS;
    }

    @Override
    public String next() {
      if (at >= ELEMENTS) {
        throw new NoSuchElementException();
      }
      boolean isThere = at++ == element;
      if (isThere) {
        failIf("next");
      }
      return isThere && broken.equals("null") ? null : "good";
    }
  }
}
