package beans;

/** Does each text arrive and come back? */
public class Texts {
  public String empty() { return ""; }
  public String withNul() { return "a\0b"; }

  /** U+1F600 and U+10FFFF, each two Java characters. */
  public String supplementary() { return "\uD83D\uDE00\uDBFF\uDFFF"; }
  public String loneSurrogate() { return "a\uD800b"; }
  public String latin() { return "gr\u00FC\u00DFe"; }
  public String echo(String text) { return text; }
  public int length(String text) { return text.length(); }

  /** The characters in hexadecimal, so that nothing is lost on the way back. */
  public String codes(String text) {
    StringBuilder codes = new StringBuilder();
    for (char c : text.toCharArray()) {
      codes.append(codes.length() == 0 ? "" : " ").append(Integer.toHexString(c));
    }
    return codes.toString();
  }

  public String repeated(String text, int times) {
    StringBuilder all = new StringBuilder();
    for (int i = 0; i < times; ++i) {
      all.append(text);
    }
    return all.toString();
  }
}
