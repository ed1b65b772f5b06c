// The diagnostic trace for developers: lines of text in a file.
// Not a log for users: no levels, no rotation, no filter.
#pragma once

#include <kelm/export.h>

#include <string>

namespace kelm {

/// Writes stamped lines.  The framework makes and frees it (framework::set_logging).
class KELM_EXPORT kelm_logger {
public:
    // Each of the formatted lines is cut at 19999 bytes.

    /// Prints `format` with its five arguments.
    ///
    /// \param format  each %s in it stands for the next argument, and for nothing when there are no more; %%
    ///                for a %
    /// \returns false when the file is not to be had
    virtual bool log(const std::string& format, const std::string& a, const std::string& b,
                     const std::string& c, const std::string& d, const std::string& e) = 0;
    /// Prints `format` with its four arguments, as above.
    ///
    /// \returns false when the file is not to be had
    virtual bool log(const std::string& format, const std::string& a, const std::string& b,
                     const std::string& c, const std::string& d) = 0;
    /// Prints `format` with its three arguments, as above.
    ///
    /// \returns false when the file is not to be had
    virtual bool log(const std::string& format, const std::string& a, const std::string& b,
                     const std::string& c) = 0;
    /// Prints `format` with its two arguments, as above.
    ///
    /// \returns false when the file is not to be had
    virtual bool log(const std::string& format, const std::string& a, const std::string& b) = 0;
    /// Prints `format` with its one argument, as above.
    ///
    /// \returns false when the file is not to be had
    virtual bool log(const std::string& format, const std::string& a) = 0;
    /// Prints `text` as it stands, and whole.
    ///
    /// \returns false when the file is not to be had
    virtual bool log(const std::string& text) = 0;

protected:
    kelm_logger() = default;
    kelm_logger(const kelm_logger&) = default;
    kelm_logger& operator=(const kelm_logger&) = default;
    ~kelm_logger() = default; // not virtual: nobody deletes a logger through this interface
};

} // namespace kelm
