// The application's handler for text that goes into documents.
// The library keeps a clone and asks it; it supplies none of its own.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

namespace kelm {

/// Decides which string properties need escaping in a document.
class KELM_EXPORT qdxml {
public:
    virtual ~qdxml() = default;
    /// \returns a new copy, which the library owns
    virtual owned<qdxml*> clone() const = 0;
    /// \returns whether the string value of the property `id` goes through the library's escaping
    virtual bool needs_xml_processing(u32 id) const = 0;

protected:
    qdxml() = default;
    qdxml(const qdxml&) = default;
    qdxml& operator=(const qdxml&) = default;
};

} // namespace kelm
