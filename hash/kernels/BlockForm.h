// SPDX-License-Identifier: MIT
// The form of most kernels, (state, blocks, count), so that tests and benchmarks can call all of these alike.
#pragma once

#include <cstddef>

namespace fyrn::kernels {

// What such a kernel works on: a state of so many words, and blocks of so many bytes.
template <class WordType, std::size_t stateWords, std::size_t bytes>
struct BlockForm {
    using Word = WordType;
    struct State {
        Word words[stateWords];
    };
    static constexpr std::size_t blockSize = bytes;
};

// A visitor's member (KernelSelect.h, LaneSelect.h) that knows its kernels' form.
template <class FormType, class Get>
struct FormedMember : Get {
    using Form = FormType;
};

template <class Form, class Get>
constexpr FormedMember<Form, Get> WithForm(Get get) {
    return {get};
}

} // namespace fyrn::kernels
