// SPDX-License-Identifier: MIT
#include "sum/HashQueue.h"

namespace sum {

HashQueue::HashQueue(unsigned, ReadWatcher* watcher) : hasher_(watcher) {}

HashQueue::~HashQueue() = default;

void HashQueue::Add(Name name, FunctionSet functions, Done done) {
    done(hasher_.Hash(name, functions));
}

void HashQueue::AddNote(std::function<void()> note) {
    note();
}

void HashQueue::Finish() {}

} // namespace sum
