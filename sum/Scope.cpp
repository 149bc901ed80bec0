// SPDX-License-Identifier: MIT
#include "sum/Scope.h"

#include "sum/PathKey.h"
#include "sum/PathRules.h"

#include <algorithm>

namespace sum {

Scope::Scope(const Options& options) : options_(options) {
    for (const Name& operand : options.operands) {
        Name buffer;
        operands_.push_back({operand, Name(KeyOf(std::string_view(operand).substr(options.hidden), buffer))});
    }
}

std::size_t Scope::PlaceOf(std::string_view key) const {
    const auto holds = [key](const Operand& operand) { return IsWithin(key, operand.key); };
    return static_cast<std::size_t>(std::ranges::find_if(operands_, holds) - operands_.begin());
}

const Scope::Operand* Scope::OperandOf(std::string_view key) const {
    const std::size_t place = PlaceOf(key);
    return place < operands_.size() ? &operands_[place] : nullptr;
}

bool Scope::IsOperand(std::string_view key) const {
    return std::ranges::find(operands_, key, &Operand::key) != operands_.end();
}

// The operand's own separator, of whichever kind, is not doubled.
Name Scope::PathBelow(const Operand& operand, std::string_view key) {
    if (key == operand.key)
        return operand.path;
    key.remove_prefix(operand.key.empty() || operand.key.ends_with('/') ? operand.key.size()
                                                                        : operand.key.size() + 1);
    const bool hasEnd = platform::LengthOfDirectory(operand.path) == operand.path.size();
    return operand.path + (hasEnd ? "" : "/") + Name(key);
}

Name Scope::PathOf(std::string_view key) const {
    const Operand* const operand = OperandOf(key);
    return operand != nullptr ? PathBelow(*operand, key) : Name(key);
}

bool Scope::Holds(std::string_view key) const {
    const Operand* const operand = OperandOf(key);
    if (operand == nullptr || options_.rules.empty())
        return operand != nullptr;
    const Name whole = PathBelow(*operand, key);
    const std::string_view path = std::string_view(whole).substr(options_.hidden);
    if (key == operand->key)
        return Counts(options_.rules, path, 0);
    const std::size_t below = path.size() - (key.size() - operand->key.size()) +
                              (operand->key.empty() || operand->key.ends_with('/') ? 0 : 1);
    for (std::size_t slash = path.find('/', below); slash != std::string_view::npos;
         slash = path.find('/', slash + 1))
        if (!IsEntered(options_.rules, path.substr(0, slash), below))
            return false;
    return Counts(options_.rules, path, below);
}

bool Scope::AddTrouble(std::string_view key, std::uint32_t reason) {
    return troubles_.emplace(Name(key), reason).second;
}

std::optional<std::uint32_t> Scope::TroubleAbove(std::string_view key) const {
    if (troubles_.empty())
        return std::nullopt;
    for (std::string_view path = key;; path = path.substr(0, path.rfind('/'))) {
        const auto trouble = troubles_.find(Name(path));
        if (trouble != troubles_.end())
            return trouble->second;
        if (path.find('/') == std::string_view::npos)
            break;
    }
    const auto atRoot = troubles_.find(key.starts_with('/') ? "/" : "");
    return atRoot != troubles_.end() ? std::optional(atRoot->second) : std::nullopt;
}

bool Scope::IsOnOtherFileSystem(std::string_view key, const platform::EntryStatus& status) const {
    platform::EntryStatus root;
    const Operand* const operand = OperandOf(key);
    return options_.oneFileSystem && operand != nullptr && platform::LookAt(operand->path, true, root) == 0 &&
           root.identity.device != status.identity.device;
}

} // namespace sum
