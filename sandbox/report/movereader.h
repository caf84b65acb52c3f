#pragma once

#include <array>
#include <string>
#include <vector>

#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/logline.h"
#include "sandbox/report/saying.h"

namespace sandbox::report {

/// Reads the lines of the move task into a run. One thread.
class MoveReader {
public:
    void see(const Saying& saying, const LogLine& line, KelvarRun& run);
    /// What is open is settled; call it when the run is over.
    void end(KelvarRun& run) { settleSchedules(run); }

private:
    struct Schedule {
        std::string target;
        std::string takeBackError; ///< of the new file, ahead of the schedule
        std::size_t line = 0;
        std::string error;
    };

    Material& attempt(const std::string& md5, const LogLine& line, KelvarRun& run);
    Material* current(KelvarRun& run);
    void refuse(const Saying& saying, const LogLine& line, KelvarRun& run);
    void replace(const Saying& saying, const LogLine& line, KelvarRun& run);
    void takeBack(const Saying& saying, const std::string& code, KelvarRun& run);
    void schedule(const std::string& target, const LogLine& line, KelvarRun& run);
    static void scheduleWithGroup(const Schedule& next, Material& row);
    void record(const Saying& saying, const LogLine& line, KelvarRun& run);
    void settleSchedules(KelvarRun& run);

    Material::Try why = Material::Try::untold; ///< of the next "not need move"
    std::array<std::string, 2> details;
    bool isLocked = false;         ///< the schedule that comes is that of the current material
    std::string takeBackError;     ///< of the file whose schedule comes next
    std::vector<Schedule> ofGroup; ///< of files that were in place, group by group
};

} // namespace sandbox::report
