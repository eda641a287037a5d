// Many threads, all operations, for a long time: afterwards everything is as it was.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <random>
#include <sstream>

#include "host/bean_discovery.h"
#include "tests/soak/soak_mix.h"
#include "tests/support/test_vm.h"
#include "tests/support/workers.h"

namespace quenlatrix::soak {
namespace {

using host::BeanObject;
using host::Host;
using test::TestVm;

// What may grow, and by how much an operation: less than if one operation in ten lost the smallest
// block that malloc gives (32 bytes), one in sixteen the smallest object of Java's (16 bytes), or
// one in a hundred thousand a reference. Resident memory also moves with where the blocks lie.
struct Series {
  const char* name;
  double mostPerOperation;
};
constexpr std::array<Series, 4> kSeries = {{{"resident bytes", 10},
                                            {"bytes from malloc", 3.2},
                                            {"bytes of the Java heap", 1},
                                            {"global references", 1e-5}}};

// Operations so far, then the series.
using Sample = std::array<double, 1 + kSeries.size()>;

// The lowest of some samples each time: what the VM takes for a while (to compile, to unwind a
// stack) is no growth. The first third is warming up.
std::vector<Sample> Floor(const std::vector<Sample>& samples) {
  constexpr std::size_t kTogether = 5;
  std::vector<Sample> floor;
  for (std::size_t i = samples.size() / 3; i + kTogether <= samples.size(); i += kTogether) {
    floor.push_back(samples[i]);
    for (std::size_t k = i; k < i + kTogether; ++k) {
      for (std::size_t s = 1; s < std::size(samples[k]); ++s)
        floor.back()[s] = std::min(floor.back()[s], samples[k][s]);
    }
  }
  return floor;
}

// Of the line that fits best (least squares).
double SlopePerOperation(const std::vector<Sample>& samples, std::size_t series) {
  double n = 0, x = 0, y = 0, xx = 0, xy = 0;
  for (const Sample& sample : samples) {
    n += 1;
    x += sample[0];
    y += sample[series];
    xx += sample[0] * sample[0];
    xy += sample[0] * sample[series];
  }
  return (n * xy - x * y) / (n * xx - x * x);
}

double ResidentBytes() {
  double size = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// The VM takes memory for each frame of a stack that overflowed, and keeps it for a while; and one
// arena of malloc's is filled sooner than one for each thread.
void KeepMemorySteady() {
  mallopt(M_ARENA_MAX, 1);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 1 << 20);
  EXPECT_EQ(pthread_setattr_default_np(&attributes), 0);
  pthread_attr_destroy(&attributes);
}

std::unique_ptr<Host> Start(bool isLong) {
  Host::Options options;
  options.pluginFile = PLUGIN_FILE;
  options.javaHome = TestVm::JavaHome();
  options.classPath =
      TestVm::Jar("test_beans.jar") + ":" + TestVm::Jar("soak_beans.jar") + ":" COMMONS_LANG_JAR;
  // Nothing in the VM grows with what has been done: the heap is there whole from the start, and
  // no memory is kept for later or taken to compile better.
  options.javaOptions = {"-Xmx64m",
                         "-Xms64m",
                         "-XX:+AlwaysPreTouch",
                         "-XX:+UseSerialGC",
                         "-XX:SoftRefLRUPolicyMSPerMB=0",
                         "-XX:TieredStopAtLevel=1"};
  if (!isLong) options.javaOptions.emplace_back("-Xcheck:jni");
  options.deny = {"denied.*"};
  std::string why;
  std::unique_ptr<Host> host = Host::Start(options, why);
  EXPECT_NE(host, nullptr) << why;
  return host;
}

// The classes that can be made, once each made and described: what is learnt once is known then.
std::vector<std::string> WarmUp(Host& host, BeanObject& state) {
  std::istringstream names(Ask(host, state, "beans"));
  std::vector<std::string> all(std::istream_iterator<std::string>(names), {});
  for (const std::string& jar : {std::string(COMMONS_LANG_JAR), TestVm::Jar("test_beans.jar")})
    std::ranges::copy(host::DiscoverBeans(host.GetVm(), jar).names, std::back_inserter(all));
  std::erase_if(all, [&host](const std::string& name) {
    // These take threads and sockets, and give them back some time later; or end the process.
    if (name == "java.util.Timer" || name.ends_with("Socket") || name == "beans.VmEnder")
      return true;
    Host::Creation creation = host.Create(name);
    return !creation.object || creation.object->Methods() == nullptr;
  });
  CallEach(host, "beans.ScalarEcho");
  return all;
}

std::uint64_t ChooseSeed() {
  const char* const given = std::getenv("QUENLATRIX_SOAK_SEED");
  const std::uint64_t seed =
      given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device()();
  std::cout << "QUENLATRIX_SOAK_SEED=" << seed << std::endl;
  return seed;
}

Sample TakeSample(Ground& ground, BeanObject& state) {
  Host& host = ground.host;
  const double javaHeap = std::stod(Ask(host, state, "usedAfterCollection"));
  return {static_cast<double>(ground.operations), ResidentBytes(),
          static_cast<double>(mallinfo2().uordblks), javaHeap,
          std::stod(Ask(host, state, "globalReferences"))};
}

// Rounds of all threads, each with a count of what is left.
std::vector<Sample> RunRounds(Ground& ground, BeanObject& state, Clock::duration all,
                              Clock::duration round) {
  std::mt19937_64 random(ChooseSeed());
  const std::size_t handlers = ground.host.GetCollector().GetCount();
  const std::string threads = Ask(ground.host, state, "threads");
  std::vector<Sample> samples;
  const Clock::time_point start = Clock::now();
  while (Clock::now() < start + all && !testing::Test::HasFailure()) {
    const std::uint64_t seed = random();
    RunInThreads(kThreads, [&, end = Clock::now() + round](int thread) {
      const auto place = static_cast<std::size_t>(thread);
      RunMix(ground, place, seed + place, end, std::numeric_limits<int>::max());
    });
    ground.host.Collect();
    EXPECT_EQ(ground.host.GetCollector().GetCount(), handlers);
    EXPECT_EQ(ground.globals.Live(), 0U);
    EXPECT_EQ(Ask(ground.host, state, "threads"), threads) << "a thread is still attached";
    samples.push_back(TakeSample(ground, state));
  }
  return samples;
}

TEST(Soak, ThreadsDoAllThereIsAndLeaveNothingBehind) {
  const Clock::duration all = EndAfter(std::chrono::seconds(4)) - Clock::now();
  const bool isLong = all > std::chrono::minutes(9);
  KeepMemorySteady();
  std::unique_ptr<Host> host = Start(isLong);
  ASSERT_NE(host, nullptr);
  std::optional<BeanObject> state = std::move(host->Create("soak.VmState").object);
  ASSERT_TRUE(state.has_value());
  // Asks the host's own bean, which is made now and stays.
  EXPECT_TRUE(state->IsInstanceOf("soak.VmState"));
  Ground ground(*host);
  ground.classes = WarmUp(*host, *state);
  EXPECT_GT(ground.classes.size(), 300U);
  host->Collect();
  const std::vector<Sample> samples = RunRounds(ground, *state, all, all / (isLong ? 120 : 2));
  EXPECT_GT(ground.calls, ground.failedCalls * 2);
  std::cout << ground.classes.size() << " classes, " << ground.threads << " threads, "
            << ground.calls << " calls (" << ground.failedCalls << " failed), heap filled "
            << ground.heapFills / 2 << " times; " << DescribeOperations() << "\n";
  for (std::size_t i = 0; isLong && i < kSeries.size(); ++i) {
    const double slope = SlopePerOperation(Floor(samples), 1 + i);
    std::cout << kSeries[i].name << ": " << samples.back()[1 + i] << ", " << slope
              << " an operation\n";
    EXPECT_LE(slope, kSeries[i].mostPerOperation) << kSeries[i].name;
  }
  state.reset();
  ground.places = {};
  host.reset();
  EXPECT_EQ(dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}

}  // namespace
}  // namespace quenlatrix::soak
