// Test programs in files.
#include "mlds/testasm/file.h"

#include <cstdint>

namespace mlds_testasm {

namespace {

constexpr std::string_view kMagic = "mldstest";
constexpr std::uint32_t kVersion = 1;

void PutNumber(std::string& bytes, std::size_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFF);
}

// The next number; more than a file can hold if there is none.
std::uint32_t TakeNumber(std::string_view& bytes) {
    if (bytes.size() < 4) return bytes = {}, UINT32_MAX;
    std::uint32_t number = 0;
    for (const char c : bytes.substr(0, 4)) number = number << 8 | static_cast<unsigned char>(c);
    bytes.remove_prefix(4);
    return number;
}

}  // namespace

std::string WriteImage(const Image& image) {
    std::string bytes(kMagic);
    PutNumber(bytes, kVersion);
    PutNumber(bytes, image.tests.size());
    PutNumber(bytes, image.code.size());
    for (const ImageTest& test : image.tests) {
        PutNumber(bytes, static_cast<std::size_t>(test.base));
        PutNumber(bytes, test.name.size());
        bytes += test.name;
    }
    for (const Bytes& instruction : image.code)
        bytes.append(instruction.begin(), instruction.end());
    return bytes;
}

bool ReadImage(std::string_view bytes, Image* pImage, std::string* pExpected) {
    *pImage = {};
    *pExpected = "a file of compiled tests";
    if (!bytes.starts_with(kMagic)) return false;
    bytes.remove_prefix(kMagic.size());
    *pExpected = "version 1 of the format";
    if (TakeNumber(bytes) != kVersion) return false;
    *pExpected = "a file that is whole";
    const std::uint32_t tests = TakeNumber(bytes);
    const std::uint32_t instructions = TakeNumber(bytes);
    for (std::uint32_t i = 0; i < tests; ++i) {
        ImageTest& test = pImage->tests.emplace_back();
        const std::uint32_t base = TakeNumber(bytes);
        const std::uint32_t length = TakeNumber(bytes);
        if (base >= instructions || base > INT32_MAX || length > bytes.size()) return false;
        test.base = static_cast<int>(base);
        test.name = bytes.substr(0, length);
        bytes.remove_prefix(length);
    }
    if (bytes.size() != std::uint64_t{instructions} * 5) return false;
    for (; !bytes.empty(); bytes.remove_prefix(5)) {
        Bytes& instruction = pImage->code.emplace_back();
        for (std::size_t i = 0; i < 5; ++i) instruction[i] = static_cast<unsigned char>(bytes[i]);
    }
    return true;
}

}  // namespace mlds_testasm
