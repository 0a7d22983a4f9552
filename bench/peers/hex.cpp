// The least that it takes to read a recording: its blocks, and the hexadecimal digits in them. Prints the sum of what
// they stand for.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <span>
#include <vector>

namespace {

constexpr std::uint8_t noDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> digits = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(noDigit);
    for (std::uint8_t digit = 0; digit < 10; ++digit) table[std::size_t{'0'} + digit] = digit;
    for (std::uint8_t digit = 10; digit < 16; ++digit) table[std::size_t{'a'} + digit - 10] = digit;
    return table;
}();

std::uint64_t sumOf(std::span<const std::uint8_t> text) {
    std::uint64_t sum = 0;
    for (std::size_t index = 0; index + 1 < text.size(); index += 2) {
        const std::uint8_t high = digits[text[index]];
        const std::uint8_t low = digits[text[index + 1]];
        if (high != noDigit && low != noDigit) sum += high * 16U + low;
    }
    return sum;
}

} // namespace

int main(int argc, char** argv) {
    const int file = argc == 2 ? ::open(argv[1], O_RDONLY | O_CLOEXEC) : -1;
    if (file < 0) return 1;
    std::vector<std::uint8_t> block(std::size_t{1} << 18);
    std::uint64_t sum = 0;
    ssize_t size = 0;
    while ((size = ::read(file, block.data(), block.size())) > 0) {
        sum += sumOf(std::span(block).first(static_cast<std::size_t>(size)));
    }
    std::printf("%llu\n", static_cast<unsigned long long>(sum));
    return size < 0 ? 1 : 0;
}
