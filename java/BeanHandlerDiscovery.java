import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.File;
import java.io.IOException;
import java.io.InputStream;
import java.lang.reflect.Constructor;
import java.lang.reflect.Modifier;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.Enumeration;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeSet;
import java.util.jar.Attributes;
import java.util.jar.Manifest;
import java.util.zip.ZipEntry;
import java.util.zip.ZipFile;

/**
 * Finds the beans of a jar or below a directory. Both may be hostile: nothing but regular files is
 * opened, no size that a file claims is believed, and none of the classes' code runs.
 */
final class BeanHandlerDiscovery {
  /** No compiler's class is as large; a larger one, or a larger manifest, would fill the heap. */
  private static final int LARGEST_ENTRY = 16 << 20;

  private static final String CLASS_SUFFIX = ".class";
  private static final String MANIFEST = "META-INF/MANIFEST.MF";

  private BeanHandlerDiscovery() {}

  /**
   * The beans' class names, sorted: the classes that the manifest marks with "Java-Bean: True", or
   * else the public, concrete ones with a public constructor without arguments. Null when there is
   * neither a jar nor a directory.
   */
  static List<String> beansOf(File file) throws IOException {
    if (file.isDirectory()) {
      Path root = file.toPath();
      return beansAmong(classesBelow(root), new HashSet<>(), entry -> read(root.resolve(entry)));
    }
    if (!file.isFile()) {
      return null;
    }
    // Not as a jar: what its manifest says of other jars and versions is none of it.
    try (ZipFile jar = new ZipFile(file)) {
      Set<String> marked = new HashSet<>();
      return beansAmong(classesIn(jar, marked), marked, entry -> read(jar, jar.getEntry(entry)));
    }
  }

  /** Where classes are looked for. */
  private interface Place {
    /** The file of that name; null when there is none, or one that is too large. */
    byte[] read(String entry) throws IOException;
  }

  /** Each directory is entered once, however many links lead there. */
  private static Set<String> classesBelow(Path root) throws IOException {
    Set<String> names = new TreeSet<>();
    Set<Object> entered = new HashSet<>();
    Deque<Path> directories = new ArrayDeque<>();
    for (Path directory = root; directory != null; directory = directories.poll()) {
      try (DirectoryStream<Path> entries = Files.newDirectoryStream(directory)) {
        if (!entered.add(keyOf(directory))) {
          continue;
        }
        for (Path entry : entries) {
          if (Files.isRegularFile(entry)) {
            addClass(root.relativize(entry).toString(), names);
          } else if (Files.isDirectory(entry)) {
            // Through a link a class has seldom its own name: what can be reached without is first.
            if (Files.isSymbolicLink(entry)) {
              directories.addLast(entry);
            } else {
              directories.addFirst(entry);
            }
          }
        }
      } catch (IOException | DirectoryIteratorException unreadable) {
        if (directory == root) {
          throw new IOException(unreadable);
        }
      }
    }
    return names;
  }

  private static Object keyOf(Path directory) throws IOException {
    Object key = Files.readAttributes(directory, BasicFileAttributes.class).fileKey();
    return key != null ? key : directory.toRealPath();
  }

  /**
   * The names of a jar's classes.
   *
   * @param marked receives the entries that the manifest marks as beans
   */
  private static Set<String> classesIn(ZipFile jar, Set<String> marked) throws IOException {
    Set<String> names = new TreeSet<>();
    ZipEntry manifestEntry = null;
    for (Enumeration<? extends ZipEntry> entries = jar.entries(); entries.hasMoreElements(); ) {
      ZipEntry entry = entries.nextElement();
      addClass(entry.getName(), names);
      if (manifestEntry == null && entry.getName().equalsIgnoreCase(MANIFEST)) {
        manifestEntry = entry;
      }
    }
    if (manifestEntry != null) {
      byte[] manifest = read(jar, manifestEntry);
      if (manifest == null) {
        throw new IOException("The manifest is too large");
      }
      takeMarks(new Manifest(new ByteArrayInputStream(manifest)), marked);
    }
    return names;
  }

  private static void takeMarks(Manifest manifest, Set<String> marked) {
    for (Map.Entry<String, Attributes> section : manifest.getEntries().entrySet()) {
      String mark = section.getValue().getValue("Java-Bean");
      if (mark != null && mark.trim().equalsIgnoreCase("True")) {
        marked.add(section.getKey());
      }
    }
  }

  private static void addClass(String entry, Set<String> names) {
    if (entry.endsWith(CLASS_SUFFIX)) {
      String path = entry.substring(0, entry.length() - CLASS_SUFFIX.length());
      // A dot in a folder's name, ".." included, would lead to another file than this one.
      if (path.indexOf('.') < 0) {
        names.add(path.replace('/', '.'));
      }
    }
  }

  private static byte[] read(ZipFile jar, ZipEntry entry) throws IOException {
    return entry == null ? null : readAll(jar.getInputStream(entry));
  }

  private static byte[] read(Path file) throws IOException {
    return Files.isRegularFile(file) ? readAll(Files.newInputStream(file)) : null;
  }

  private static byte[] readAll(InputStream stream) throws IOException {
    try (InputStream in = stream) {
      ByteArrayOutputStream read = new ByteArrayOutputStream();
      byte[] part = new byte[8192];
      for (int count = in.read(part); count >= 0; count = in.read(part)) {
        read.write(part, 0, count);
        if (read.size() > LARGEST_ENTRY) {
          return null;
        }
      }
      return read.toByteArray();
    }
  }

  private static List<String> beansAmong(Set<String> names, Set<String> marked, Place place) {
    ClassLoader loader = new PlaceLoader(place);
    List<String> found = new ArrayList<>();
    for (String name : names) {
      boolean wanted = marked.contains(name.replace('.', '/') + CLASS_SUFFIX);
      if ((wanted || marked.isEmpty()) && isBean(name, loader, wanted)) {
        found.add(name);
      }
    }
    return found;
  }

  /** Loads and links a class, but doesn't initialise it. */
  private static boolean isBean(String name, ClassLoader loader, boolean marked) {
    try {
      Class<?> cls = loader.loadClass(name);
      boolean makeable = false;
      for (Constructor<?> constructor : cls.getConstructors()) {
        makeable |= constructor.getParameterCount() == 0;
      }
      int modifiers = cls.getModifiers();
      return marked || makeable && Modifier.isPublic(modifiers) && !Modifier.isAbstract(modifiers);
    } catch (Exception | LinkageError unusable) {
      // No class's name, a class of a newer version, one that lacks others, a forged one.
      return false;
    }
  }

  /** Finds the classes of a place there, and what they need besides on the VM's class path. */
  private static final class PlaceLoader extends ClassLoader {
    private final Place place;

    PlaceLoader(Place place) {
      super(BeanHandlerDiscovery.class.getClassLoader());
      this.place = place;
    }

    @Override
    protected Class<?> loadClass(String name, boolean resolve) throws ClassNotFoundException {
      synchronized (getClassLoadingLock(name)) {
        Class<?> known = findLoadedClass(name);
        if (known != null) {
          return known;
        }
        byte[] bytes = name.startsWith("java.") ? null : bytesOf(name);
        return bytes == null
            ? super.loadClass(name, resolve)
            : defineClass(name, bytes, 0, bytes.length);
      }
    }

    private byte[] bytesOf(String name) throws ClassNotFoundException {
      try {
        return place.read(name.replace('.', '/') + CLASS_SUFFIX);
      } catch (IOException | RuntimeException unreadable) {
        throw new ClassNotFoundException(name, unreadable);
      }
    }
  }
}
