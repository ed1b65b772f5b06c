// The types of the kit's own tests: shelves and books, and hooks into which a test plants what is wrong.
// A process knows one meta model: this one is of a program of its own.
#pragma once

#include <kelm/kelm.h>
#include <kelm/testing/laws.h>

#include <functional>
#include <string>

namespace kelm::bookshelf {

namespace types {
inline constexpr u32 shelf = 100;
inline constexpr u32 book = 101;
inline constexpr u32 note = 102; ///< without hooks
} // namespace types

namespace props {
inline constexpr u32 count = 100;   ///< a number
inline constexpr u32 title = 101;   ///< a text
inline constexpr u32 next = 102;    ///< a reference
inline constexpr u32 authors = 103; ///< a list
inline constexpr u32 price = 104;   ///< a value of a kind of its own, see `coin`
} // namespace props

inline constexpr u32 coin_kind = 700200;

/// What hooks do; what is empty passes.
struct planted {
    static inline std::function<bool(object*, u32)> behind_set;
    static inline std::function<bool(object*, object*)> behind_add;
    static inline std::function<bool(object*, object*)> behind_remove;
    static inline std::function<bool(object*)> behind_create;
    static inline std::function<bool(object*)> before_delete;
    static inline std::function<bool(object*)> at_delete;
    static inline std::function<bool(object*, message*)> told;
    static inline std::function<bool(kelm::model*)> at_end;
    static inline std::function<bool(kelm::model*)> behind_load;
    static inline bool coins_are_lost = false; ///< when they are read from streams

    static void clear();
};

/// Starts the process up with these types; does nothing when that has been done.
meta_model_builder& started_types();

/// \returns what comes of histories that hold some laws
testing::law_report hold(testing::law_set laws, testing::law_options options = {});

/// \returns what a file holds
std::string file_text(const char* path);

} // namespace kelm::bookshelf
