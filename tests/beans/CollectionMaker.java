package beans;

import java.lang.reflect.Array;
import java.util.AbstractList;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.BitSet;
import java.util.Collections;
import java.util.HashMap;
import java.util.List;
import java.util.ListIterator;
import java.util.Map;

/** How are the collections of a real program walked, and what is none? */
public class CollectionMaker {
  public Object make(String what) throws Exception {
    switch (what) {
      case "empty": return Collections.emptyList();
      case "keys": return map().keySet();
      case "entries": return map().entrySet();
      case "deque": return new ArrayDeque<>(Arrays.asList('a', 'b'));
      case "texts": return Arrays.asList("", "t\u00e4xt \ud83d\ude00", "a,b");
      case "wrappers": return Arrays.asList(true, (byte) -1, (short) -2, 3, 1L << 40, 1.5f, 'c');
      case "arrays": return Arrays.asList(new int[] {1, 2}, new String[] {"a", null}, new int[0],
          new int[][] {{1, 2}, {3, 4}}, new int[1][1][1], "end");
      case "nested": return Arrays.asList(list(1, 2), list(), list("a", list(true)));
      case "code": return list(Class.forName("I").getConstructor().newInstance(),
          Array.newInstance(Class.forName("I"), 2), new int[2],
          Array.newInstance(new LoaderTrick().renamed("double"), 2),
          Array.newInstance(new LoaderTrick().renamed("my long"), 2, 1));
      case "foreign": return list(new LoaderTrick().foreignPoint());
      case "a null": return Arrays.asList("a", null, "b");
      case "no size": return (Iterable<Object>) Collections::emptyIterator;
      case "no iterator": return new BitSet();
      case "other iterator": return new OtherIterator();
      default: throw new IllegalArgumentException(what);
    }
  }

  /** A list that needs no memory, of numbers, texts and objects in turn. */
  public Object makeLong(int size) {
    return new AbstractList<Object>() {
      @Override
      public Object get(int index) {
        return index % 3 == 0 ? (Object) index : index % 3 == 1 ? "text" : new int[] {index};
      }

      @Override
      public int size() {
        return size;
      }
    };
  }

  private static List<Object> list(Object... elements) {
    return new ArrayList<>(Arrays.asList(elements));
  }

  private static Map<String, Integer> map() {
    Map<String, Integer> map = new HashMap<>();
    map.put("a", 1);
    map.put("b", 2);
    return map;
  }

  /** Has both methods, but iterator() isn't the one that is looked for. */
  public static final class OtherIterator {
    public ListIterator<Object> iterator() { return Collections.emptyListIterator(); }
    public int size() { return 0; }
  }
}
