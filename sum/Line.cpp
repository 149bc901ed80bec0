// SPDX-License-Identifier: MIT
#include "sum/Line.h"

#include "sum/Escape.h"

#include <utility>

namespace sum {

namespace {

std::uint32_t NumberOf(std::span<const std::byte> digest) {
    std::uint32_t number = 0;
    for (const std::byte byte : digest)
        number = number << 8 | std::to_integer<std::uint32_t>(byte);
    return number;
}

std::string Padded(const std::string& text, std::size_t width, char filler) {
    return text.size() < width ? std::string(width - text.size(), filler) + text : text;
}

std::uint64_t Blocks(std::uint64_t size, std::uint64_t blockSize) {
    return size / blockSize + (size % blockSize != 0 ? 1 : 0);
}

std::string UpperHex(const std::vector<std::byte>& digest) {
    std::string text = fyrn::ToHex(digest);
    for (char& c : text)
        c = c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c;
    return text;
}

// Forms without escapes cannot hold a line end, and SFV takes a line that begins with a semicolon
// for a comment.
bool CanHold(Form form, const Name& name) {
    if (form == Form::sfv && (name.starts_with(';') || name.find('\r') != Name::npos))
        return false;
    return (form != Form::sfv && form != Form::hashdeep) || name.find('\n') == Name::npos;
}

} // namespace

std::string LegacyText(Legacy legacy, std::span<const std::byte> digest, std::uint64_t size) {
    const std::string number = std::to_string(NumberOf(digest));
    if (legacy == Legacy::crc)
        return number + ' ' + std::to_string(size);
    if (legacy == Legacy::sysv)
        return number + ' ' + std::to_string(Blocks(size, 512));
    return Padded(number, 5, '0') + ' ' + Padded(std::to_string(Blocks(size, 1024)), 5, ' ');
}

LineWriter::LineWriter(const Options& options, FunctionSet functions)
    : options_(options), functions_(std::move(functions)) {}

std::string LineWriter::Header() const {
    if (options_.form == Form::sfv)
        return "; Written by fyrnsum\n";
    if (options_.form != Form::hashdeep)
        return {};
    std::string header = "%%%% HASHDEEP-1.0\n%%%% size,";
    for (const FunctionChoice& choice : *functions_)
        header += choice.name + ',';
    return header + "filename\n";
}

std::string LineWriter::Text(const std::vector<std::byte>& digest) const {
    return options_.encoding == Encoding::base64 ? ToBase64(digest) : fyrn::ToHex(digest);
}

void LineWriter::AppendLine(std::string& lines, const FunctionChoice& choice,
                            const std::vector<std::byte>& digest, const Name* name,
                            std::uint64_t size) const {
    if (options_.encoding == Encoding::raw) {
        lines.append(reinterpret_cast<const char*>(digest.data()), digest.size());
        return;
    }
    if (choice.legacy != Legacy::none) {
        lines += LegacyText(choice.legacy, digest, size);
        if (name != nullptr)
            lines.append(1, ' ').append(*name);
        lines += End();
        return;
    }
    const Name shown = name != nullptr ? *name : "-";
    if (options_.form == Form::sfv) {
        lines += shown + ' ' + UpperHex(digest) + '\n';
    } else if (options_.form == Form::bagit) {
        lines += Text(digest) + "  " + PercentEscaped(shown) + '\n';
    } else {
        const bool escape = !options_.zero && NeedsEscape(shown);
        const std::string written = escape ? Escaped(shown) : shown;
        if (escape)
            lines += '\\';
        if (options_.form == Form::tagged)
            lines += choice.tag + " (" + written + ") = " + Text(digest);
        else
            lines += Text(digest) + (options_.star ? " *" : "  ") + written;
        lines += End();
    }
}

void LineWriter::AppendJson(std::string& lines, const Name& name, const FileResult& result,
                            std::size_t first) const {
    lines += '{' + JsonPath(name) + ",\"size\":" + std::to_string(result.size);
    for (const FunctionChoice& choice : *functions_) {
        const std::vector<std::byte>& digest = result.digests[first++];
        lines += ",\"" + choice.name + "\":";
        if (choice.legacy != Legacy::none)
            lines += std::to_string(NumberOf(digest));
        else
            lines += '"' + Text(digest) + '"';
    }
    lines += '}';
    lines += End();
}

void LineWriter::AppendHashdeep(std::string& lines, const Name& name, const FileResult& result,
                                std::size_t first) const {
    lines += std::to_string(result.size) + ',';
    for (std::size_t i = 0; i < functions_->size(); ++i)
        lines += fyrn::ToHex(result.digests[first + i]) + ',';
    lines += name + '\n';
}

bool LineWriter::Append(std::string& lines, const Name* name, const FileResult& result,
                        std::size_t first) const {
    const Name shown = name != nullptr ? *name : "-";
    if (!CanHold(options_.form, shown))
        return false;
    if (options_.form == Form::json) {
        AppendJson(lines, shown, result, first);
    } else if (options_.form == Form::hashdeep) {
        AppendHashdeep(lines, shown, result, first);
    } else {
        for (std::size_t i = 0; i < functions_->size(); ++i)
            AppendLine(lines, (*functions_)[i], result.digests[first + i], name, result.size);
    }
    return true;
}

} // namespace sum
