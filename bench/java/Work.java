package bench;

import java.util.ArrayList;
import java.util.List;

/** What the benchmarks call: methods that do next to nothing themselves. */
public class Work {
  private static final Object OBJECT = new StringBuilder("object");
  private final int[] thousand = new int[1000];
  private final int[] million = new int[1000000];
  private final String[] texts = new String[10000];
  private final List<String> stringList = new ArrayList<>();
  private final List<Integer> integerList = new ArrayList<>();

  public Work() {
    for (int i = 0; i < million.length; ++i) {
      million[i] = i;
    }
    System.arraycopy(million, 0, thousand, 0, thousand.length);
    for (int i = 0; i < texts.length; ++i) {
      texts[i] = "text " + i;
    }
    for (int i = 0; i < 100000; ++i) {
      stringList.add("text " + i);
      integerList.add(i);
    }
  }

  public int add(int a, int b) { return a + b; }

  public String echo(String text) { return text; }

  public Object object() { return OBJECT; }

  public void fail() { throw new IllegalStateException("as ordered"); }

  public int takeInts(int[] values) { return values[values.length - 1]; }

  public void refuseInts(int[] values) {
    throw new IllegalStateException("last " + values[values.length - 1]);
  }

  public void refuseTexts(String[] values) {
    throw new IllegalStateException("last " + values[values.length - 1]);
  }

  public int[] giveThousand() { return thousand; }

  public int[] giveMillion() { return million; }

  public int takeTexts(String[] values) { return values.length + values[values.length - 1].length(); }

  public String[] giveTexts() { return texts; }

  public List<String> stringList() { return stringList; }

  public List<Integer> integerList() { return integerList; }
}
