import java.io.ByteArrayOutputStream;
import java.io.DataInputStream;
import java.io.DataOutputStream;
import java.io.File;
import java.io.IOException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.net.URL;
import java.net.URLClassLoader;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.TreeSet;
import java.util.jar.JarEntry;
import java.util.jar.JarFile;
import java.util.jar.JarOutputStream;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/**
 * Checks the Java side of introspection without the native one. Argument: the jar of the test
 * beans, which is not on the class path. Prints what differs; the exit status is 1 when anything did.
 */
public class BeanHandlerTest {
  interface General { Object pick(int place); }

  interface Special { String pick(int place); }

  interface Both extends General, Special {}

  private static int failures = 0;

  private final ClassLoader beans;
  private final File beansJar;
  private final Path folder = Files.createTempDirectory("bean_handler_test");

  private BeanHandlerTest(File beansJar) throws IOException {
    this.beansJar = beansJar;
    URL[] jars = {beansJar.toURI().toURL()};
    beans = new URLClassLoader(jars, BeanHandlerTest.class.getClassLoader());
  }

  public static void main(String[] arguments) throws Exception {
    BeanHandlerTest test = new BeanHandlerTest(new File(arguments[0]));
    try {
      test.describesBeans();
      test.describesEverythingThatReflectionFinds();
      test.answersNothingForNothing();
      test.findsBeans();
      test.survivesHostileJars();
      test.looksIntoThePlaceItselfAlone();
      test.refusesWhatCannotBeExamined();
    } finally {
      test.removeFolder();
    }
    check("static initialisers run", null, System.getProperty("beans.StaticInitRecorder"));
    System.out.println(failures == 0 ? "All as expected" : failures + " checks failed");
    System.exit(failures == 0 ? 0 : 1);
  }

  private static void check(String what, Object expected, Object found) {
    if (expected == null ? found != null : !expected.equals(found)) {
      ++failures;
      System.out.println(what + "\n  expected: " + expected + "\n  found:    " + found);
    }
  }

  private void describesBeans() throws Exception {
    String longest = String.join("", Collections.nCopies(121, "o")) + "ng";
    String[][] expectations = {
      {"OverloadedSetters", "mode int 2; mode java.lang.String 2; value int 3; width int 1",
          "void setValue(java.lang.String); void setValue(long); "
              + "beans.OverloadedSetters setWidth(int)"},
      {"GenericBase", "serial int 1; value java.lang.Object 3",
          "java.lang.String describe(java.lang.Object)"},
      {"GenericChild", "serial int 1; value java.lang.String 3",
          "int compareTo(beans.GenericChild); java.lang.String describe(java.lang.String)"},
      {"HiddenBean", "", "int twice(); int value()"},
      {"UnusualNames", "1st int 1; URL java.lang.String 1; l" + longest + " int 1; x int 1",
          "int get(); int getLo" + longest + "(); int getaB(); "
              + "int getlower(); int get\u00DCber(); "
              + "java.lang.String gr\u00F6\u00DFe(java.lang.String); boolean issue()"},
    };
    for (String[] expected : expectations) {
      Catalogue found = new Catalogue(beans.loadClass("beans." + expected[0]));
      check("rows of " + expected[0], expected[1], String.join("; ", found.rows));
      check("methods of " + expected[0], expected[2], String.join("; ", found.methods));
    }
    check("one entry for results that differ",
        "[java.lang.String pick(int)]", new Catalogue(Both.class).methods.toString());
  }

  /** Whatever can be called is in the catalogue, once, and what is in it exists. */
  private void describesEverythingThatReflectionFinds() throws Exception {
    Class<?>[] classes = {
      StringBuilder.class, ArrayList.class, java.util.AbstractList.class,
      java.text.SimpleDateFormat.class, java.util.Calendar.class, Thread.class, Class.class,
      beans.loadClass("beans.Overloads"), beans.loadClass("beans.ScalarEcho"),
      beans.loadClass("beans.ArrayEcho"), beans.loadClass("beans.BrokenCollection"),
    };
    for (Class<?> cls : classes) {
      Catalogue catalogue = new Catalogue(cls);
      Set<String> found = new TreeSet<>(catalogue.accessors);
      found.addAll(catalogue.methods);
      check(cls + ": entries", catalogue.accessors.size() + catalogue.methods.size(), found.size());
      Set<String> invented = new TreeSet<>(found);
      Set<String> namesLeftOut = new TreeSet<>();
      for (Method method : cls.getMethods()) {
        if (!Modifier.isStatic(method.getModifiers())
            && method.getDeclaringClass() != Object.class) {
          String form = form(method.getName(), method.getReturnType(), method.getParameterTypes());
          invented.remove(form);
          check(cls + " has " + form, true, method.isBridge() || found.contains(form));
          if (found.stream().noneMatch(each -> each.contains(" " + method.getName() + "("))) {
            namesLeftOut.add(method.getName());
          }
        }
      }
      check(cls + ": entries that don't exist", Collections.emptySet(), invented);
      check(cls + ": names left out", Collections.emptySet(), namesLeftOut);
    }
  }

  private void answersNothingForNothing() {
    BeanHandler handler = new BeanHandler();
    String[] texts = {"untouched"};
    int[] numbers = {-7};
    Object[][] answers = {
      {"beans before a search", -1, handler.getBeanCount()},
      {"properties of null", 0, handler.getPropertyCount(null)},
      {"rows of null", 0, handler.getPropertyInfo(null, 1, texts, texts, numbers)},
      {"methods of null", 0, handler.getMethodCount(null)},
      {"entries of null", 0, handler.getMethodInfo(null, 1, texts, texts, numbers)},
      {"parameters of null", 0, handler.getParameterInfo(null, 0, 1, texts, texts)},
      {"name of null", null, handler.getClassName(null)},
      {"method -1", 0, handler.getParameterInfo(Runnable.class, -1, 1, texts, texts)},
      {"method past the end", 0, handler.getParameterInfo(Runnable.class, 1, 1, texts, texts)},
      {"arrays", "untouched -7", texts[0] + " " + numbers[0]},
    };
    for (Object[] answer : answers) {
      check((String) answer[0], answer[1], answer[2]);
    }
  }

  private void findsBeans() throws Exception {
    Map<String, byte[]> classes = read(beansJar);
    Set<String> expected = new TreeSet<>();
    for (String entry : classes.keySet()) {
      expected.add(entry.replace('/', '.').replaceAll("\\.class$", ""));
    }
    expected.removeIf(name -> name.matches(".*\\$[0-9]+"));  // Anonymous ones are no beans.
    for (String name : new String[] {"AbstractBean", "BeanInterface", "BrokenCollection$Elements",
        "HiddenBean", "NoDefaultConstructor", "PrivateConstructor",
        "ThrowingMethods$CheckedException"}) {
      check("beans jar has " + name, true, expected.remove("beans." + name));
    }
    String all = expected.toString();
    File jar = jar("all.jar", null, classes);
    checkBeans(jar, all);
    check("open after the search", Collections.emptyList(), openFilesIn(folder));
    check("jar deleted", true, jar.delete());

    Path tree = Files.createDirectories(folder.resolve("a tree#1%20"));
    Path linked = Files.createDirectories(folder.resolve("linked"));
    Files.createSymbolicLink(tree.resolve("beans"), linked);
    Files.createSymbolicLink(linked.resolve("loop"), tree);
    for (Map.Entry<String, byte[]> each : classes.entrySet()) {
      Files.write(tree.resolve(each.getKey()), each.getValue());
    }
    Files.write(tree.resolve("notes.txt"), new byte[] {'x'});
    checkBeans(tree.toFile(), all);

    String manifest = "Manifest-Version: 1.0\n\n"
        + "Name: beans/Point.class\nJava-Bean: True\n\nName: beans/Missing.class\nJava-Bean: True\n\n"
        + "Name: beans/Texts.class\nJava-Bean: False\n\nName: beans/Greeting.ser\nJava-Bean: True\n\n"
        + "Name: beans/GenericChild.class\nJava-Bean: true\n\n";
    checkBeans(jar("marked.jar", manifest, classes), "[beans.GenericChild, beans.Point]");
    checkBeans(jar("empty.jar", null, Collections.<String, byte[]>emptyMap()), "[]");
  }

  private void survivesHostileJars() throws Exception {
    Map<String, byte[]> classes = read(beansJar);
    byte[] point = classes.get("beans/Point.class");
    byte[] newer = classes.get("beans/Texts.class").clone();
    newer[7] = (byte) 200;
    byte[] cut = Arrays.copyOf(classes.get("beans/ThreeStrings.class"), 200);
    Map<String, byte[]> hostile = new TreeMap<>();
    hostile.put("beans/Point.class", point);
    hostile.put("beans/Texts.class", newer);
    hostile.put("beans/ThreeStrings.class", cut);
    hostile.put("beans/GenericChild.class", classes.get("beans/GenericChild.class"));
    hostile.put("beans/Huge.class", new byte[17 << 20]);
    for (String name : new String[] {"../beans/Point", "beans/../beans/Point", "/beans/Point",
        "//etc/Point", "beans.Point", "other/Point", "java/lang/Point", "META-INF/versions/9/Point",
        "module-info", "", "java.lang.Object", "beans/", "beans/Point.class/Point", "[I", "a;b\0c"}) {
      hostile.put(name + ".class", point);
    }
    for (int i = 0; i < 5000; ++i) {
      hostile.put("many/C" + i + ".class", new byte[] {(byte) 0xCA, (byte) 0xFE, (byte) i});
    }
    File jar = jar("hostile.jar", null, hostile);
    checkBeans(jar, "[beans.Point]");
    check("open after a hostile jar", Collections.emptyList(), openFilesIn(folder));
  }

  private void looksIntoThePlaceItselfAlone() throws Exception {
    byte[] point = read(beansJar).get("beans/Point.class");
    Path pipe = folder.resolve("pipe.class");
    check("pipe", 0, new ProcessBuilder("mkfifo", pipe.toString()).start().waitFor());
    Map<String, byte[]> classes = new TreeMap<>();
    // No bean, whatever the VM's own class of that name is.
    classes.put("BeanHandler.class", emptyClass("BeanHandler", "java/lang/Object"));
    classes.put("beans/Point.class", point);
    checkBeans(jar("namesake.jar", "Manifest-Version: 1.0\nClass-Path: pipe.class\n\n", classes),
        "[beans.Point]");
    classes.put("[I.class", point);
    checkBeans(jar("array.jar", "Manifest-Version: 1.0\n\nName: [I.class\nJava-Bean: True\n\n"
        + "Name: beans/Point.class\nJava-Bean: True\n\n", classes), "[beans.Point]");

    // Two links in each folder double the paths with each.
    Path tree = Files.createDirectories(folder.resolve("doubling"));
    for (int i = 0; i < 30; ++i) {
      Path each = Files.createDirectories(tree.resolve("n" + i));
      for (String link : new String[] {"a", "b"}) {
        Files.createSymbolicLink(each.resolve(link), tree.resolve("n" + (i + 1)));
      }
    }
    Files.write(Files.createDirectories(tree.resolve("beans")).resolve("Point.class"), point);
    Files.createSymbolicLink(tree.resolve("alias"), tree.resolve("beans"));
    Files.createSymbolicLink(tree.resolve("Pipe.class"), pipe);
    checkBeans(tree.toFile(), "[beans.Point]");
  }

  /** What the directory at a zip file's end says of the first entry's size. */
  private static void claimSizeOfFirstEntry(File zip, int size) throws IOException {
    byte[] bytes = Files.readAllBytes(zip.toPath());
    int at = 0;
    while (bytes[at] != 'P' || bytes[at + 1] != 'K' || bytes[at + 2] != 1 || bytes[at + 3] != 2) {
      ++at;
    }
    for (int i = 0; i < 4; ++i) {
      bytes[at + 24 + i] = (byte) (size >> 8 * i);
    }
    Files.write(zip.toPath(), bytes);
  }

  private void refusesWhatCannotBeExamined() throws Exception {
    Map<String, byte[]> classes = read(beansJar);
    File wrong = jar("wrong.jar", "no manifest at all\n", classes);
    String value = String.join("\n ", Collections.nCopies(1 << 20, "seventeen letters"));
    File huge = jar("huge.jar", "Manifest-Version: 1.0\nLong: " + value + "\n\n", classes);
    classes.clear();
    for (int i = 0; i < 5000; ++i) {
      String name = String.format("C%05d", i);
      classes.put(name + ".class", emptyClass(name, String.format("C%05d", i + 1)));
    }
    File deep = jar("deep.jar", null, classes);
    File claiming = jar("claiming.jar", "Manifest-Version: 1.0\nLong: " + value + "\n\n", classes);
    claimSizeOfFirstEntry(claiming, 100000);
    BeanHandler handler = new BeanHandler();
    for (String path : new String[] {wrong.getPath(), huge.getPath(), claiming.getPath(),
        deep.getPath(), "a\0b", "/dev/null", null}) {
      check("a good jar", true, handler.enumJavaBeans(beansJar.getPath()));
      check("examined " + path, false, handler.enumJavaBeans(path));
      check("beans after " + path, -1, handler.getBeanCount());
    }
    check("open after the search", Collections.emptyList(), openFilesIn(folder));
  }

  private static void checkBeans(File place, String expected) {
    BeanHandler handler = new BeanHandler();
    check("examined " + place, true, handler.enumJavaBeans(place.getPath()));
    List<String> found = new ArrayList<>();
    for (int i = 0; i < handler.getBeanCount(); ++i) {
      found.add(handler.getBeanName(i));
      check("index of " + found.get(i), i, handler.getBeanIndex(found.get(i)));
    }
    check("beans of " + place, expected, found.toString());
    check("bean past the end", null, handler.getBeanName(found.size()));
    check("index of no bean", -1, handler.getBeanIndex("no.Bean"));
  }

  /** A class as the native side reads it. */
  private static final class Catalogue {
    final List<String> rows = new ArrayList<>();
    final List<String> accessors = new ArrayList<>();
    final List<String> methods = new ArrayList<>();

    Catalogue(Class<?> cls) {
      BeanHandler handler = new BeanHandler();
      int count = handler.getPropertyCount(cls);
      String[] names = new String[count];
      String[] types = new String[count];
      int[] numbers = new int[count];
      check("rows filled", count > 0 ? 1 : 0,
          handler.getPropertyInfo(cls, count, names, types, numbers));
      for (int i = 0; i < count; ++i) {
        rows.add(names[i] + " " + types[i] + " " + numbers[i]);
        addAccessors(names[i], types[i], numbers[i]);
      }
      count = handler.getMethodCount(cls);
      names = new String[count];
      types = new String[count];
      numbers = new int[count];
      check("methods filled", count > 0 ? 1 : 0,
          handler.getMethodInfo(cls, count, names, types, numbers));
      for (int i = 0; i < count; ++i) {
        methods.add(types[i] + " " + names[i] + parameters(handler, cls, numbers[i]));
      }
    }

    private static String parameters(BeanHandler handler, Class<?> cls, int method) {
      int count = handler.getParameterCount(cls, method);
      String[] names = new String[count];
      String[] types = new String[count];
      check("parameters filled", 1, handler.getParameterInfo(cls, method, count, names, types));
      for (int i = 0; i < count; ++i) {
        types[i] = (types[i] + " " + names[i]).trim();
      }
      return "(" + String.join(",", types) + ")";
    }

    private void addAccessors(String name, String type, int kinds) {
      String rest = Character.toUpperCase(name.charAt(0)) + name.substring(1);
      String[] forms = {
        type + " get" + rest + "()", "void set" + rest + "(" + type + ")",
        type + " is" + rest + "()", type + " get" + rest + "(int)",
        "void set" + rest + "(int," + type + ")", type + " is" + rest + "(int)"
      };
      for (int i = 0; i < forms.length; ++i) {
        if ((kinds >> i & 1) != 0) {
          accessors.add(forms[i]);
        }
      }
    }
  }

  private static String form(String name, Class<?> result, Class<?>[] parameters) {
    return Stream.of(parameters).map(Class::getName)
        .collect(Collectors.joining(",", result.getName() + " " + name + "(", ")"));
  }

  /** Class C00007 extends C00008, and so on. */
  private static byte[] emptyClass(String name, String base) throws IOException {
    ByteArrayOutputStream bytes = new ByteArrayOutputStream();
    DataOutputStream file = new DataOutputStream(bytes);
    file.writeLong(0xCAFEBABE00000034L);
    file.writeShort(5);
    for (int i = 0; i < 2; ++i) {
      file.writeByte(1);
      file.writeUTF(i == 0 ? name : base);
      file.writeByte(7);
      file.writeShort(2 * i + 1);
    }
    for (int value : new int[] {Modifier.PUBLIC, 2, 4, 0, 0, 0, 0}) {
      file.writeShort(value);
    }
    return bytes.toByteArray();
  }

  private static Map<String, byte[]> read(File file) throws IOException {
    Map<String, byte[]> classes = new TreeMap<>();
    try (JarFile jar = new JarFile(file)) {
      for (JarEntry entry : Collections.list(jar.entries())) {
        if (entry.getName().endsWith(".class")) {
          byte[] bytes = new byte[(int) entry.getSize()];
          new DataInputStream(jar.getInputStream(entry)).readFully(bytes);
          classes.put(entry.getName(), bytes);
        }
      }
    }
    return classes;
  }

  private File jar(String name, String manifest, Map<String, byte[]> entries) throws IOException {
    Path path = folder.resolve(name);
    try (JarOutputStream jar = new JarOutputStream(Files.newOutputStream(path))) {
      if (manifest != null) {
        jar.putNextEntry(new JarEntry(JarFile.MANIFEST_NAME));
        jar.write(manifest.getBytes(StandardCharsets.UTF_8));
      }
      for (Map.Entry<String, byte[]> entry : entries.entrySet()) {
        jar.putNextEntry(new JarEntry(entry.getKey()));
        jar.write(entry.getValue());
      }
    }
    return path.toFile();
  }

  private static List<String> openFilesIn(Path folder) throws IOException {
    List<String> open = new ArrayList<>();
    for (File link : new File("/proc/self/fd").listFiles()) {
      String target = link.getCanonicalPath();
      if (target.startsWith(folder.toRealPath().toString())) {
        open.add(target);
      }
    }
    return open;
  }

  private void removeFolder() throws IOException {
    try (Stream<Path> walk = Files.walk(folder)) {
      walk.sorted(Collections.reverseOrder()).map(Path::toFile).forEach(File::delete);
    }
  }
}
