// Bytes as text and back, and any text as bytes, with any length told.
// The input is both: the bytes, and the units of the text.
#include "tests/fuzz/fuzzing.h"

#include <kelm/base64.h>

#include <vector>

using kelm::fuzzing::fail;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text;
    const int length = Base64::Encode(data, static_cast<int>(size), text);
    if (length != static_cast<int>((size + 2) / 3 * 4)) fail("the text has another length");
    std::vector<unsigned char> back((size + 2) / 3 * 3);
    if (Base64::Decode(text, length, back.data()) != static_cast<int>(size)) fail("bytes are lost");
    if (!std::equal(data, data + size, back.begin())) fail("other bytes come back");

    std::u16string any;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        any.push_back(static_cast<char16_t>(data[i] | (i % 3 == 0 ? 0 : data[i + 1] << 8)));
    for (const int told : {static_cast<int>(any.size()), size ? int{data[0]} : 0, -1}) {
        const int held = std::min(told, static_cast<int>(any.size()));
        std::vector<unsigned char> room(held < 1 ? 0 : (static_cast<std::size_t>(held) + 3) / 4 * 3);
        const int given = Base64::Decode(any, told, room.data());
        if (given < 0 || static_cast<std::size_t>(given) > room.size()) fail("more bytes than there is room");
    }
    return 0;
}
