package beans;

import java.util.ArrayList;
import java.util.Arrays;

/** Does each element of a walk come back as its own kind? */
public class MixedCollection extends ArrayList<Object> {
  private static final long serialVersionUID = 1L;

  public MixedCollection() { super(Arrays.asList("text", 42, 2.5, true, 'c', new Point(1, 2))); }
}
