// SPDX-License-Identifier: MIT
// Objects of the library in any order of calls - pieces, clones, resets, many at once - against the references.
// Input: a list of steps, each with what it needs.
#include "fuzz/FuzzInput.h"
#include "fyrn/fyrn.h"
#include "tests/helpers/Bytes.h"
#include "tests/helpers/FunctionReference.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

constexpr std::size_t maxObjects = 20;
constexpr std::size_t maxMessage = 20'000;

struct Free {
    void operator()(fyrn_hash* hash) const { fyrn_hash_free(hash); }
};

// An object, and the message that it must have taken in.
struct Object {
    const fyrn_function* function;
    std::unique_ptr<fyrn_hash, Free> hash;
    Bytes message;
};

class Run {
  public:
    explicit Run(fuzz::Input input) : input_(input) {}

    void Steps() {
        AddObject();
        for (int step = 0; step < 200 && !input_.IsEmpty(); ++step)
            Step();
        for (Object& object : objects_)
            Finish(object);
    }

  private:
    void Step() {
        const std::uint8_t kind = input_.Take<std::uint8_t>();
        Object& object = objects_[kind / 8 % objects_.size()];
        switch (kind % 8) {
        case 0:
            return AddObject();
        case 1:
            return AddClone(object);
        case 2:
            return Reset(object);
        case 3:
            return Finish(object);
        case 4:
            return UpdateMany();
        case 5:
            return DigestMany(object.function);
        default:
            return Update(object, Piece());
        }
    }

    void Keep(Object object) {
        fuzz::Require(object.hash != nullptr, "there is an object");
        if (objects_.size() == maxObjects)
            objects_.erase(objects_.begin());
        objects_.push_back(std::move(object));
    }

    // With a digest of its own length, or of any other that the function has.
    void AddObject() {
        const fyrn_function* const function =
            fyrn_function_at(input_.Take<std::uint8_t>() % fyrn_function_count());
        std::unique_ptr<fyrn_hash, Free> hash(
            fyrn_hash_new_sized(function, input_.Take<std::uint16_t>() % 512u));
        if (hash == nullptr)
            hash.reset(fyrn_hash_new(function));
        Keep({function, std::move(hash), {}});
    }

    void AddClone(const Object& object) {
        Keep({object.function, std::unique_ptr<fyrn_hash, Free>(fyrn_hash_clone(object.hash.get())),
              object.message});
    }

    static void Reset(Object& object) {
        fyrn_hash_reset(object.hash.get());
        object.message.clear();
    }

    static void Finish(Object& object) {
        Bytes digest(fyrn_hash_digest_size(object.hash.get()));
        fyrn_hash_finish(object.hash.get(), digest.data());
        const char* const name = fyrn_function_name(object.function);
        fuzz::RequireEqual(helpers::ToHex(digest),
                           helpers::ToHex(helpers::FunctionReference(name, object.message, digest.size())),
                           name);
        object.message.clear();
    }

    // Some bytes, or none.
    Message Piece() {
        static const Bytes bytes = helpers::PseudoRandomBytes(4096, 18);
        const std::size_t begin = input_.Take<std::uint8_t>();
        return Message(bytes).subspan(begin, input_.Take<std::uint16_t>() % 3000u);
    }

    // Room that is left in a message is used up at most.
    static Message Record(Object& object, Message piece) {
        piece = piece.first(std::min(piece.size(), maxMessage - object.message.size()));
        object.message.insert(object.message.end(), piece.begin(), piece.end());
        return piece;
    }

    static void Update(Object& object, Message piece) {
        piece = Record(object, piece);
        fyrn_hash_update(object.hash.get(), piece.data(), piece.size());
    }

    void UpdateMany() {
        std::vector<fyrn_hash*> hashes;
        std::vector<const void*> data;
        std::vector<std::size_t> sizes;
        for (Object& object : objects_) {
            const Message piece = Record(object, Piece());
            hashes.push_back(object.hash.get());
            data.push_back(piece.empty() ? nullptr : piece.data());
            sizes.push_back(piece.size());
        }
        fyrn_hash_update_many(hashes.size(), hashes.data(), data.data(), sizes.data());
    }

    void DigestMany(const fyrn_function* function) {
        const std::size_t count = input_.Take<std::uint8_t>() % maxObjects;
        const std::size_t digestSize = fyrn_function_digest_size(function);
        std::vector<Message> messages;
        std::vector<Bytes> digests(count, Bytes(digestSize));
        std::vector<unsigned char*> places;
        std::vector<const void*> data;
        std::vector<std::size_t> sizes;
        for (std::size_t i = 0; i < count; ++i) {
            messages.push_back(Piece());
            places.push_back(digests[i].data());
            data.push_back(messages[i].data());
            sizes.push_back(messages[i].size());
        }
        fuzz::Require(fyrn_digest_many(function, count, data.data(), sizes.data(), places.data()) == 0,
                      "there is memory");
        const char* const name = fyrn_function_name(function);
        for (std::size_t i = 0; i < count; ++i)
            fuzz::RequireEqual(helpers::ToHex(digests[i]),
                               helpers::ToHex(helpers::FunctionReference(name, messages[i], digestSize)),
                               name);
    }

    fuzz::Input input_;
    std::vector<Object> objects_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size <= 2000)
        Run(fuzz::Input(data, size)).Steps();
    return 0;
}
