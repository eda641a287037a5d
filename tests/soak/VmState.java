package soak;

import java.lang.management.ManagementFactory;
import java.lang.reflect.Modifier;
import java.net.URI;
import java.nio.file.FileSystems;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import javax.management.ObjectName;

/** What does the VM hold, and which beans does it bring along? */
public class VmState {
  public long usedAfterCollection() {
    System.gc();
    return Runtime.getRuntime().totalMemory() - Runtime.getRuntime().freeMemory();
  }

  /** Java's own and those that are attached. */
  public int threads() { return Thread.getAllStackTraces().size(); }

  /** As the VM counts them, whoever made them. */
  public String globalReferences() throws Exception {
    String dump = (String) ManagementFactory.getPlatformMBeanServer().invoke(
        new ObjectName("com.sun.management:type=DiagnosticCommand"), "threadPrint",
        new Object[] {new String[0]}, new String[] {String[].class.getName()});
    return dump.replaceFirst("(?s).*JNI global refs: (\\d+).*", "$1");
  }

  /** The classes of java.base that a bean handler can make, separated by blanks. */
  public String beans() throws Exception {
    Path java = FileSystems.getFileSystem(URI.create("jrt:/")).getPath("modules/java.base/java");
    try (Stream<Path> files = Files.walk(java)) {
      return files.map(file -> java.getParent().relativize(file).toString())
          .filter(file -> file.endsWith(".class"))
          .map(file -> file.replace(".class", "").replace('/', '.'))
          .filter(VmState::isBean)
          .sorted()
          .collect(Collectors.joining(" "));
    }
  }

  private static boolean isBean(String name) {
    try {
      Class<?> cls = Class.forName(name, false, null);
      cls.getConstructor();
      return Modifier.isPublic(cls.getModifiers()) && !Modifier.isAbstract(cls.getModifiers());
    } catch (ReflectiveOperationException noBean) {
      return false;
    }
  }
}
