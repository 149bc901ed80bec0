// SPDX-License-Identifier: MIT
// The runtime's start-up code calls wmain by itself.

// Patterns arrive as typed: the program expands them, and the runtime must not do it before.
extern "C" {
extern int _dowildcard;
int _dowildcard = 0;
}
