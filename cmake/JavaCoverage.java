import java.io.IOException;
import java.io.InputStream;
import java.lang.reflect.InvocationTargetException;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.jar.JarEntry;
import java.util.jar.JarFile;
import org.jacoco.core.analysis.Analyzer;
import org.jacoco.core.analysis.CoverageBuilder;
import org.jacoco.core.analysis.ICounter;
import org.jacoco.core.analysis.ISourceFileCoverage;
import org.jacoco.core.data.ExecutionDataStore;
import org.jacoco.core.data.SessionInfoStore;
import org.jacoco.core.instr.Instrumenter;
import org.jacoco.core.runtime.LoggerRuntime;
import org.jacoco.core.runtime.RuntimeData;

/**
 * Runs a program and prints, for each source file of a jar, "lines,lines run,numbers of the others".
 * Debian's JaCoCo agent can't be loaded, so the jar's classes are instrumented here.
 * Arguments: the jar, the program's main class, which is on the class path as what it uses besides
 * the jar is, and the program's arguments.
 */
public class JavaCoverage {
  private final Map<String, byte[]> classes = new HashMap<>();
  private final LoggerRuntime runtime = new LoggerRuntime();
  private final RuntimeData data = new RuntimeData();

  private JavaCoverage(String jar) throws Exception {
    try (JarFile file = new JarFile(jar)) {
      for (JarEntry entry : (Iterable<JarEntry>) file.stream()::iterator) {
        if (entry.getName().endsWith(".class")) {
          classes.put(entry.getName(), file.getInputStream(entry).readAllBytes());
        }
      }
    }
    runtime.startup(data);
  }

  public static void main(String[] arguments) throws Exception {
    JavaCoverage coverage = new JavaCoverage(arguments[0]);
    // The program may end the VM.
    Runtime.getRuntime().addShutdownHook(new Thread(coverage::report));
    try {
      coverage.new Loader().loadClass(arguments[1]).getMethod("main", String[].class)
          .invoke(null, (Object) Arrays.copyOfRange(arguments, 2, arguments.length));
    } catch (InvocationTargetException failure) {
      failure.getCause().printStackTrace();
      System.exit(1);
    }
  }

  /** Defines anew what is on the class path, and the instrumented classes beside it. */
  private final class Loader extends ClassLoader {
    @Override
    protected Class<?> loadClass(String name, boolean resolve) throws ClassNotFoundException {
      synchronized (getClassLoadingLock(name)) {
        Class<?> loaded = findLoadedClass(name);
        return loaded != null ? loaded : define(name);
      }
    }

    private Class<?> define(String name) throws ClassNotFoundException {
      String file = name.replace('.', '/') + ".class";
      try (InputStream plain = getResourceAsStream(file)) {
        byte[] bytes = classes.containsKey(file)
            ? new Instrumenter(runtime).instrument(classes.get(file), name)
            : plain == null || name.startsWith("java") ? null : plain.readAllBytes();
        return bytes == null ? super.loadClass(name, false)
            : defineClass(name, bytes, 0, bytes.length);
      } catch (IOException unreadable) {
        throw new ClassNotFoundException(name, unreadable);
      }
    }
  }

  private void report() {
    ExecutionDataStore executed = new ExecutionDataStore();
    data.collect(executed, new SessionInfoStore(), false);
    CoverageBuilder builder = new CoverageBuilder();
    Analyzer analyzer = new Analyzer(executed, builder);
    try {
      for (Map.Entry<String, byte[]> each : classes.entrySet()) {
        analyzer.analyzeClass(each.getValue(), each.getKey());
      }
    } catch (IOException impossible) {
      throw new IllegalStateException(impossible);
    }
    for (ISourceFileCoverage file : builder.getSourceFiles()) {
      List<String> missed = new ArrayList<>();
      for (int line = file.getFirstLine(); line <= file.getLastLine(); ++line) {
        if (file.getLine(line).getStatus() == ICounter.NOT_COVERED) {
          missed.add(String.valueOf(line));
        }
      }
      System.out.printf("%s,%d,%d,%s%n", file.getName(), file.getLineCounter().getTotalCount(),
          file.getLineCounter().getCoveredCount(), String.join(" ", missed));
    }
  }
}
