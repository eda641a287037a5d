package beans;

import java.util.ArrayList;
import java.util.Arrays;

/** How is a collection walked? */
public class ThreeStrings extends ArrayList<String> {
  private static final long serialVersionUID = 1L;

  public ThreeStrings() { super(Arrays.asList("one", "two", "three")); }
}
