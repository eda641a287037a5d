#include "host/statement_runner.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <thread>
#include <utility>

#include "host/bean_script.h"

namespace quenlatrix::host {

// One statement and the thread that runs it.
class StatementRunner::Job {
 public:
  Job(Host& host, HeldValues& names, const TextStyle& style, std::string statement)
      : statement(std::move(statement)), session(host, names, style), ended(MakeEvent()) {
    thread = std::thread([this] { Run(); });
  }
  ~Job() {
    thread.join();
    close(ended);
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  const std::string& GetStatement() const { return statement; }
  Session& GetSession() { return session; }
  // Readable when the statement has ended.
  int GetEvent() const { return ended; }
  bool HasEnded() const { return hasEnded; }
  // Once it has ended.
  Report TakeReport() { return std::move(report); }

 private:
  static int MakeEvent() {
    const int event = eventfd(0, EFD_CLOEXEC);
    if (event < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    return event;
  }
  void Run() {
    report = RunStatement(statement, session);
    hasEnded = true;
    const std::uint64_t one = 1;
    static_cast<void>(!write(ended, &one, sizeof one));
  }

  const std::string statement;
  Session session;
  Report report;
  std::atomic<bool> hasEnded = false;
  const int ended;
  std::thread thread;
};

StatementRunner::StatementRunner(Host& host, HeldValues& names, const TextStyle& style,
                                 ProgressLine& progress)
    : host(host), names(names), style(style), progress(progress) {}

StatementRunner::~StatementRunner() = default;

std::optional<Report> StatementRunner::Run(const std::string& statement,
                                           InterruptWatch& interrupts) {
  interrupts.Clear();
  std::unique_ptr<Job> job;
  try {
    job = std::make_unique<Job>(host, names, style, statement);
  } catch (const std::system_error& error) {
    Report report;
    report.Fail(ExitStatus::Failed, std::string("the statement can't be started: ") + error.what() +
                                        "; there may be too many that still go on");
    return report;
  }
  progress.Begin(statement + ": Ctrl-C stops waiting", job->GetSession().GetElements());
  const bool hasEnded = interrupts.WaitFor(job->GetEvent());
  progress.End();
  if (hasEnded) return job->TakeReport();
  job->GetSession().Abandon();
  givenUp.push_back(std::move(job));
  return std::nullopt;
}

std::vector<std::string> StatementRunner::GetNamesOfLastGivenUp() const {
  return givenUp.empty() ? std::vector<std::string>() : givenUp.back()->GetSession().GetUsedNames();
}

std::vector<std::string> StatementRunner::TakeEnded() {
  std::vector<std::string> ended;
  for (auto job = givenUp.begin(); job != givenUp.end();) {
    if ((*job)->HasEnded()) {
      ended.push_back((*job)->GetStatement());
      job = givenUp.erase(job);
    } else {
      ++job;
    }
  }
  return ended;
}

std::size_t StatementRunner::CountGoingOn() {
  std::size_t count = 0;
  for (const std::unique_ptr<Job>& job : givenUp) count += job->HasEnded() ? 0 : 1;
  return count;
}

}  // namespace quenlatrix::host
