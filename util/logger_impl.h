// The trace file of developers.
// Whether there is one is the framework's business.
#pragma once

#include <kelm/logger.h>

#include <fstream>

namespace kelm {

/// Writes "kelm_logger.log" in the current directory, anew each time; each line is flushed.  A formatted text is
/// cut at 19999 bytes, a plain one is written whole.
class kelm_logger_impl final : public kelm_logger {
public:
    kelm_logger_impl();

    bool log(const std::string& format, const std::string& a, const std::string& b, const std::string& c,
             const std::string& d, const std::string& e) override;
    bool log(const std::string& format, const std::string& a, const std::string& b, const std::string& c,
             const std::string& d) override;
    bool log(const std::string& format, const std::string& a, const std::string& b,
             const std::string& c) override;
    bool log(const std::string& format, const std::string& a, const std::string& b) override;
    bool log(const std::string& format, const std::string& a) override;
    bool log(const std::string& text) override;

private:
    std::ofstream stream_;
};

} // namespace kelm
