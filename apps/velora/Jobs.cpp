#include "Jobs.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <nlohmann/json.hpp>
#include <thread>

#include "CommandLine.h"
#include "Console.h"
#include "Json.h"
#include "platform/System.h"

namespace velora::cli {
namespace {

constexpr std::chrono::milliseconds kTick(100);
constexpr size_t kNamesInSummary = 20;

size_t RunHere(size_t count, const std::function<void(size_t)>& work,
               const std::function<void(size_t)>& done, const std::function<void(size_t)>& tick) {
  for (size_t i = 0; i < count; ++i) {
    if (IsInterrupted()) return i;
    tick(i);
    work(i);
    done(i);
  }
  return count;
}

/// The state that the workers of one run share.
class Pool {
 public:
  Pool(size_t count, const std::function<void(size_t)>& work)
      : work_(work), finished_(count, false) {}

  void Work() {
    while (!IsInterrupted()) {
      const size_t index = next_.fetch_add(1);
      if (index >= finished_.size()) return;
      work_(index);
      const std::scoped_lock lock(mutex_);
      finished_[index] = true;
      ++count_;
      changed_.notify_one();
    }
    const std::scoped_lock lock(mutex_);
    changed_.notify_one();
  }

  /// Waits a tick's length at most; true when `index` is finished.
  bool WaitFor(size_t index) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kTick, [&] { return finished_[index]; });
  }

  size_t Count() {
    const std::scoped_lock lock(mutex_);
    return count_;
  }

  bool IsFinished(size_t index) {
    const std::scoped_lock lock(mutex_);
    return finished_[index];
  }

 private:
  const std::function<void(size_t)>& work_;
  std::atomic<size_t> next_ = 0;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<bool> finished_;
  size_t count_ = 0;
};

/// Joins on every way out.
class Threads {
 public:
  ~Threads() { Join(); }
  void Add(std::thread thread) { threads_.push_back(std::move(thread)); }
  void Join() {
    for (std::thread& thread : threads_) {
      if (thread.joinable()) thread.join();
    }
  }

 private:
  std::vector<std::thread> threads_;
};

/// An object's lines, moved in by the two columns of an array's elements.
std::string Indented(const std::string& json) {
  std::string out = "  ";
  for (const char c : json) {
    out += c;
    if (c == '\n') out += "  ";
  }
  return out;
}

std::string ErrorObject(const std::string& path, const FileReport& report) {
  nlohmann::ordered_json object;
  object["path"] = path;
  object["error"] = (report.subject.empty() ? "" : report.subject + ": ") + report.error;
  return JsonText(object);
}

/// Prints the reports of one run as they come in.
class Reporter {
 public:
  Reporter(Console& console, const std::vector<Input>& inputs, const FileRun& run)
      : console_(console), inputs_(inputs), run_(run) {}

  void Begin() {
    if (run_.json) console_.Print(inputs_.empty() ? "[" : "[\n");
  }

  void Report(size_t index, const FileReport& report) {
    const std::string& path = inputs_[index].path;
    for (const std::string& note : report.notes) console_.Note(note);
    for (const std::string& warning : report.warnings) console_.Warning(path, warning);
    if (!report.error.empty()) {
      console_.Error(report.subject.empty() ? path : report.subject, report.error);
    }
    if (run_.json) {
      const std::string element = report.error.empty() ? report.json : ErrorObject(path, report);
      console_.Print((printed_++ ? ",\n" : "") + Indented(element));
    } else {
      console_.Print(report.text);
    }
    ExitStatus status = report.status;
    if (run_.strict && !report.warnings.empty()) status = Worse(status, ExitStatus::kNo);
    if (status != ExitStatus::kDone) failed_.push_back(path);
    status_ = Worse(status_, status);
  }

  ExitStatus End(size_t reported) {
    if (run_.json) console_.Print(printed_ ? "\n]\n" : "]\n");
    if (reported < inputs_.size()) {
      console_.Error("", "interrupted after " + std::to_string(reported) + " of " +
                             std::to_string(inputs_.size()) + " files");
    }
    if (inputs_.size() > 1 && (run_.summary || !failed_.empty()))
      console_.Summary(SummaryLine(reported));
    return IsInterrupted() ? ExitStatus::kInterrupted : status_;
  }

 private:
  std::string SummaryLine(size_t reported) const {
    const std::string all = std::to_string(reported) + " files";
    if (failed_.empty()) return std::string(run_.name) + ": " + all + ", all good";
    std::string line =
        std::string(run_.name) + ": " + std::to_string(failed_.size()) + " of " + all + " failed: ";
    const size_t named = std::min(failed_.size(), kNamesInSummary);
    for (size_t i = 0; i < named; ++i) line += (i ? ", " : "") + failed_[i];
    if (named < failed_.size()) {
      line += " and " + std::to_string(failed_.size() - named) + " more";
    }
    return line;
  }

  Console& console_;
  const std::vector<Input>& inputs_;
  const FileRun& run_;
  size_t printed_ = 0;
  std::vector<std::string> failed_;
  ExitStatus status_ = ExitStatus::kDone;
};

/// A job never lets an exception out: one bad file must not end the run.
FileReport GuardedReport(const std::function<FileReport(size_t)>& work, const Input& input,
                         size_t index) {
  FileReport report;
  try {
    if (input.fault) return work(index);
    report.Fail(ExitStatus::kInput, input.fault.Message());
  } catch (const std::bad_alloc&) {
    report.Fail(ExitStatus::kInput, "out of memory");
  } catch (const std::exception& error) {
    report.Fail(ExitStatus::kInput, error.what());
  }
  return report;
}

}  // namespace

size_t RunInOrder(size_t count, unsigned jobs, const std::function<void(size_t)>& work,
                  const std::function<void(size_t)>& done,
                  const std::function<void(size_t)>& tick) {
  const size_t workers = std::min<size_t>(jobs, count);
  if (workers <= 1) return RunHere(count, work, done, tick);
  Pool pool(count, work);
  Threads threads;
  for (size_t i = 0; i < workers; ++i) threads.Add(std::thread([&pool] { pool.Work(); }));
  size_t reported = 0;
  while (reported < count && !IsInterrupted()) {
    if (pool.WaitFor(reported)) done(reported++);
    tick(pool.Count());
  }
  threads.Join();
  while (reported < count && pool.IsFinished(reported)) done(reported++);
  return reported;
}

FileRun FileRunFrom(const Arguments& arguments) {
  const auto has = [&](std::string_view name) {
    return arguments.Knows(name) && arguments.Has(name);
  };
  FileRun run;
  run.name = arguments.GetCommand().name;
  run.json = has("json");
  run.strict = has("strict");
  run.jobs = GetProcessorCount();
  if (has("jobs")) run.jobs = static_cast<unsigned>(arguments.Number("jobs", run.jobs));
  return run;
}

ExitStatus RunOverFiles(Console& console, const std::vector<Input>& inputs, const FileRun& run,
                        const std::function<FileReport(size_t index)>& work) {
  std::vector<FileReport> reports(inputs.size());
  Reporter reporter(console, inputs, run);
  reporter.Begin();
  const size_t reported = RunInOrder(
      inputs.size(), run.jobs, [&](size_t i) { reports[i] = GuardedReport(work, inputs[i], i); },
      [&](size_t i) {
        reporter.Report(i, reports[i]);
        reports[i] = {};
      },
      [&](size_t finished) {
        if (inputs.size() > 1) console.Progress(finished, inputs.size());
      });
  console.EndProgress();
  return reporter.End(reported);
}

}  // namespace velora::cli
