#include "os/event_log.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace {

class EventLogFileTest : public testing::Test {
 protected:
  EventLogFileTest() : path(testing::TempDir() + "event_log_XXXXXX") {
    close(mkstemp(path.data()));
  }
  ~EventLogFileTest() override { unlink(path.c_str()); }

  std::string Written() const {
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  std::string path;
};

TEST_F(EventLogFileTest, AnEventBecomesALineOfTheFile) {
  ASSERT_TRUE(OpenSystemEventLog(path.c_str(), nullptr));
  EXPECT_TRUE(ReportSystemEvent(EVT_ERROR, CAT_CONFIG, "could not open %s", "100%s"));
  EXPECT_TRUE(CloseSystemEventLog());
  EXPECT_THAT(Written(), testing::MatchesRegex("\\[ *[0-9]+\\] [0-9]{4}-[0-9]{2}-[0-9]{2} "
                                               "[0-9]{2}:[0-9]{2}:[0-9]{2} CONFIG     ERROR    "
                                               "could not open 100%s\n"));
}

}  // namespace
