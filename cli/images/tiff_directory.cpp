#include "cli/images/tiff_directory.h"

#include <algorithm>
#include <array>

namespace ombrix::cli {

namespace {

constexpr std::size_t kMostFields = 4096;  // of a directory that is to be believed

struct ValueType {
    std::size_t size = 0;    ///< bytes
    std::size_t number = 0;  ///< bytes of each number in it: a rational has two
};

/// By the number of the type.
constexpr std::array<ValueType, 19> kTypes = {{{},
                                               {1, 1},
                                               {1, 1},
                                               {2, 2},
                                               {4, 4},
                                               {8, 4},
                                               {1, 1},
                                               {1, 1},
                                               {2, 2},
                                               {4, 4},
                                               {8, 4},
                                               {4, 4},
                                               {8, 8},
                                               {4, 4},
                                               {},
                                               {},
                                               {8, 8},
                                               {8, 8},
                                               {8, 8}}};

ValueType TypeOf(std::uint16_t type) { return type < kTypes.size() ? kTypes[type] : ValueType{}; }

void Append(Bytes& bytes, std::uint64_t number, std::size_t size, bool littleEndian) {
    bytes.resize(bytes.size() + size);
    PutNumber(bytes, bytes.size() - size, size, littleEndian, number);
}

}  // namespace

const TiffField* TiffDirectory::Find(std::uint16_t tag) const {
    const auto field = std::ranges::find(fields, tag, &TiffField::tag);
    return field == fields.end() ? nullptr : &*field;
}

void TiffDirectory::Set(TiffField field) {
    std::erase_if(fields, [&field](const TiffField& other) { return other.tag == field.tag; });
    fields.push_back(std::move(field));
}

std::uint64_t TiffLayout::Number(const TiffField& field, std::size_t index) const {
    const std::size_t size = TypeOf(field.type).number;
    if (size == 0 || (index + 1) * size > field.value.size()) return 0;
    return GetNumber(field.value, index * size, size, littleEndian);
}

TiffField TiffLayout::MakeField(std::uint16_t tag, std::uint16_t type,
                                const std::vector<std::uint64_t>& numbers) const {
    const ValueType kind = TypeOf(type);
    TiffField field{tag, type, numbers.size() * kind.number / kind.size, {}, 0};
    for (const std::uint64_t number : numbers) Append(field.value, number, kind.number, littleEndian);
    return field;
}

std::optional<TiffLayout> LayoutOf(std::span<const std::uint8_t> file) {
    if (file.size() < 14 || file[0] != file[1] || (file[0] != 'I' && file[0] != 'M')) return std::nullopt;
    TiffLayout layout{file[0] == 'I', false};
    const std::uint64_t version = GetNumber(file, 2, 2, layout.littleEndian);
    if (version != 42 && (version != 43 || file.size() < 24)) return std::nullopt;
    layout.big = version == 43;
    return layout;
}

TiffDirectory ReadDirectory(std::span<const std::uint8_t> file, const TiffLayout& layout, std::uint64_t at) {
    const bool little = layout.littleEndian;
    const std::size_t countSize = layout.big ? 8 : 2;
    const std::size_t offsetSize = layout.OffsetSize();
    const std::size_t fieldSize = 4 + 2 * offsetSize;
    TiffDirectory directory;
    if (at == 0 || at > file.size() || file.size() - at < countSize) return directory;
    const std::uint64_t count = GetNumber(file, at, countSize, little);
    if (count > kMostFields || file.size() - at - countSize < count * fieldSize) return directory;
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::size_t from = at + countSize + i * fieldSize;
        TiffField field;
        field.tag = static_cast<std::uint16_t>(GetNumber(file, from, 2, little));
        field.type = static_cast<std::uint16_t>(GetNumber(file, from + 2, 2, little));
        field.count = GetNumber(file, from + 4, offsetSize, little);
        const std::size_t size = TypeOf(field.type).size;
        if (size == 0 || field.count > file.size() / size) continue;
        const std::size_t bytes = field.count * size;
        const std::size_t valueAt = from + 4 + offsetSize;
        field.at = bytes <= offsetSize ? valueAt : GetNumber(file, valueAt, offsetSize, little);
        if (field.at > file.size() || file.size() - field.at < bytes) continue;
        const auto value = file.subspan(field.at, bytes);
        field.value.assign(value.begin(), value.end());
        directory.fields.push_back(std::move(field));
    }
    const std::size_t end = at + countSize + count * fieldSize;
    if (file.size() - end >= offsetSize) {
        directory.nextAt = end;
        directory.next = GetNumber(file, end, offsetSize, little);
    }
    return directory;
}

TiffDirectory FirstDirectory(std::span<const std::uint8_t> file, const TiffLayout& layout) {
    if (file.size() < layout.FirstAt() + layout.OffsetSize()) return {};
    return ReadDirectory(file, layout, GetNumber(file, layout.FirstAt(), layout.OffsetSize(), layout.littleEndian));
}

TiffDirectory SubDirectory(std::span<const std::uint8_t> file, const TiffLayout& layout, const TiffDirectory& parent,
                           std::uint16_t tag) {
    const TiffField* pointer = parent.Find(tag);
    return pointer ? ReadDirectory(file, layout, layout.Number(*pointer)) : TiffDirectory{};
}

Bytes WriteDirectory(TiffDirectory directory, const TiffLayout& layout, std::uint64_t offset) {
    std::ranges::sort(directory.fields, {}, &TiffField::tag);
    const bool little = layout.littleEndian;
    const std::size_t countSize = layout.big ? 8 : 2;
    const std::size_t offsetSize = layout.OffsetSize();
    const std::size_t end = countSize + directory.fields.size() * (4 + 2 * offsetSize) + offsetSize;
    Bytes bytes;
    Bytes values;
    Append(bytes, directory.fields.size(), countSize, little);
    for (const TiffField& field : directory.fields) {
        Append(bytes, field.tag, 2, little);
        Append(bytes, field.type, 2, little);
        Append(bytes, field.count, offsetSize, little);
        if (field.value.size() <= offsetSize) {
            bytes.insert(bytes.end(), field.value.begin(), field.value.end());
            bytes.resize(bytes.size() + offsetSize - field.value.size());
        } else {
            Append(bytes, offset + end + values.size(), offsetSize, little);
            values.insert(values.end(), field.value.begin(), field.value.end());
            if (values.size() % 2 != 0) values.push_back(0);
        }
    }
    Append(bytes, directory.next, offsetSize, little);
    bytes.insert(bytes.end(), values.begin(), values.end());
    return bytes;
}

TiffField Reordered(TiffField field, const TiffLayout& from, const TiffLayout& to) {
    const std::size_t size = TypeOf(field.type).number;
    if (from.littleEndian == to.littleEndian || size < 2) return field;
    for (std::size_t at = 0; at + size <= field.value.size(); at += size) {
        std::reverse(field.value.begin() + static_cast<std::ptrdiff_t>(at),
                     field.value.begin() + static_cast<std::ptrdiff_t>(at + size));
    }
    return field;
}

}  // namespace ombrix::cli
