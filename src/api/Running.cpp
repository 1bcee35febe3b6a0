// The run of the public header.
#include "api/DataSet.h"
#include "api/Guarded.h"
#include "api/PlannedRun.h"
#include "api/Result.h"
#include "base/console.h"
#include "base/plainlocale.h"
#include "control/frontend.h"
#include "results/results.h"
#include "stats/CFactorial.h"

#include <cstdio>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

namespace kva::api {

namespace {

// --- Progress ----------------------------------------------------------------------------

struct CancelledRun {
    std::string Why;
};

// Tells the callback, and ends the run where it says so.
class Teller {
  public:
    explicit Teller(const ProgressCallback& callback) : Callback(callback) {}

    void begin(const PassStep& step) {
        Now = {step.Name, 0};
        tell();
    }
    void share(std::size_t done, std::size_t all) {
        Now.share = static_cast<double>(done) / static_cast<double>(all);
        tell();
    }

  private:
    void tell() const {
        if (Callback && !goesOn()) {
            throw CancelledRun{"the run was cancelled"};
        }
    }

    bool goesOn() const {
        try {
            return Callback(Now);
        } catch (const std::exception& failure) {
            throw CancelledRun{std::string("the progress callback threw: ") + failure.what()};
        } catch (...) {
            throw CancelledRun{"the progress callback threw"};
        }
    }

    const ProgressCallback& Callback; // NOT OWNED
    Progress Now;
};

// --- The run -------------------------------------------------------------------------------

// The one table that runs share is whole before the first of them.
void fillSharedTable() {
    static std::once_flag filled;
    std::call_once(filled, [] { (void)Factorial.calc(CFactorial::kLargest); });
}

// True if it is taken.
bool takeIMInformation(Run& run, const std::string& text) {
    const InputFile stream(fmemopen(const_cast<char*>(text.data()), text.size(), "rb"));
    if (!stream) {
        throw std::bad_alloc();
    }
    return readIMInfo(run, stream.get()) == 0;
}

Test testOf(const TestRow& row) {
    return {row.Statistic,          row.Population1, row.Population2, row.Locus, row.Count.Hits,
            row.Count.Permutations, row.Count.Ended, row.P,           row.Error, row.Holm,
            row.BenjaminiHochberg};
}

Outcome<Result> runInMemory(const DataSet& data, const Settings& settings,
                            const ProgressCallback& progress) {
    const RunPlan plan = planOf(settings);
    const PlainLocale plain;
    const ConsoleTo nobody(nullptr);
    fillSharedTable();
    AnalyseDataObj run;
    run.KeepInMemory();
    run.CopyOf(data.content().Loaded);
    run.InitPath();
    const auto content = std::make_shared<Result::Content>();
    if (!settings.imInformation.empty() && !takeIMInformation(run, settings.imInformation)) {
        return Error{ErrorKind::Settings, "imInformation is no IM information of these data"};
    }
    Teller teller(progress);
    const std::vector<TestRow> tests = runPlan(
        run, plan, [&teller](const PassStep& step) { teller.begin(step); },
        [&teller](std::size_t done, std::size_t all) { teller.share(done, all); });
    for (const TestRow& test : tests) {
        content->Tests.push_back(testOf(test));
    }
    content->Warnings = run.Failures;
    content->Sheets = run.takeTexts();
    for (const std::string& fault : readResults(content->Sheets, [](const TidyRow&) {})) {
        content->Warnings.push_back(fault);
    }
    return Result(content);
}

} // namespace

Outcome<Result> run(const DataSet& data, const Settings& settings,
                    const ProgressCallback& progress) {
    return guarded([&]() -> Outcome<Result> {
        try {
            return runInMemory(data, settings, progress);
        } catch (const WrongWord& wrong) {
            return Error{ErrorKind::Settings, wrong.what()};
        } catch (const CancelledRun& cancelled) {
            return Error{ErrorKind::Cancelled, cancelled.Why};
        }
    });
}

} // namespace kva::api
