// SPDX-License-Identifier: MIT
// The question on a terminal, with a child process behind a pseudo-terminal, and the end after a fault.
#include "platform/Process.h"
#include "platform/Status.h"

#include "tests/platform/EndChild_Posix.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <string>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int otherAnswer = 0;

// What stands unread on a terminal may be dropped when the session on it ends.
constexpr std::chrono::milliseconds timeToRead{200};

// Everything that a child process writes to its terminal until it ends.
std::string ReadToEnd(int terminal) {
    std::string text;
    std::array<char, 4096> piece;
    for (ssize_t count; (count = read(terminal, piece.data(), piece.size())) > 0;)
        text.append(piece.data(), static_cast<std::size_t>(count));
    return text;
}

int StatusOf(pid_t child) {
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << status;
    return WEXITSTATUS(status);
}

// Everything that a child process writes to its terminal until it asks, or ends.
std::string ReadToQuestion(int terminal) {
    std::string text;
    char byte;
    while (!text.ends_with("[y/n] ") && read(terminal, &byte, 1) == 1)
        text += byte;
    return text;
}

struct Dialogue {
    int answer;
    std::string screen;
};

// Asks in a child process. The user reads the question, waits for a while, and types all lines at once; what is typed
// before, the terminal would show amid the question.
Dialogue Ask(
    const std::string& typed, void (*prepare)() = [] {}, std::chrono::milliseconds pause = {}) {
    int terminal;
    std::fflush(stdout); // or the child would pass on what this process has printed
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        prepare();
        const int answer = platform::AskYesNo(L"First line\nGo on? \x20AC", L"Caption");
        std::this_thread::sleep_for(timeToRead);
        EndChild(answer);
    }
    Dialogue dialogue;
    dialogue.screen = ReadToQuestion(terminal);
    std::this_thread::sleep_for(pause);
    EXPECT_EQ(write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    dialogue.screen += ReadToEnd(terminal);
    dialogue.answer = StatusOf(child);
    close(terminal);
    return dialogue;
}

TEST(QuestionPosix, YesAndNoAreUnderstood) {
    EXPECT_EQ(Ask("y\n").answer, platform::answerYes);
    EXPECT_EQ(Ask("Yes please\n").answer, platform::answerYes);
    EXPECT_EQ(Ask("n\n").answer, platform::answerNo);
    EXPECT_EQ(Ask("NO\n").answer, platform::answerNo);
}

TEST(QuestionPosix, TheStatusLineIsGoneBeforeTheQuestion) {
    const Dialogue dialogue = Ask("y\n", [] { platform::ShowStatus(L"reading \x20AC"); });
    const std::string expected = "\rreading \xE2\x82\xAC\x1b[K\r\x1b[K\r\nCaption\r\n";
    EXPECT_NE(dialogue.screen.find(expected), std::string::npos) << dialogue.screen;
}

TEST(QuestionPosix, TheQuestionIsRepeatedUntilItIsAnswered) {
    const Dialogue dialogue = Ask("\nperhaps\n ny\n0\nn\n");
    EXPECT_EQ(dialogue.answer, platform::answerNo);
    std::size_t asked = 0;
    for (std::size_t at = 0; (at = dialogue.screen.find("[y/n]", at)) != std::string::npos; ++at)
        ++asked;
    EXPECT_EQ(asked, 5u);
}

TEST(QuestionPosix, CaptionAndTextAreShown) {
    const Dialogue dialogue = Ask("n\n");
    EXPECT_NE(dialogue.screen.find("Caption\r\nFirst line\r\nGo on? \xE2\x82\xAC [y/n] "), std::string::npos)
        << dialogue.screen;
}

TEST(QuestionPosix, TheEndOfInputIsAnotherAnswer) {
    EXPECT_EQ(Ask("\x04").answer, otherAnswer);
    EXPECT_EQ(Ask("perhaps\n\x04").answer, otherAnswer);
}

TEST(QuestionPosix, RedirectedStreamsAreNotTouched) {
    const Dialogue dialogue = Ask("y\n", [] {
        EXPECT_NE(dup(0), -1); // so that the terminal stays open, and its reader goes on
        const int null = open("/dev/null", O_RDWR);
        for (const int stream : {0, 1, 2})
            dup2(null, stream);
    });
    EXPECT_EQ(dialogue.answer, platform::answerYes);
    EXPECT_NE(dialogue.screen.find("Go on?"), std::string::npos);
}

TEST(QuestionPosix, ASignalDoesNotAnswer) {
    const auto raiseSoon = [] {
        struct sigaction action = {};
        action.sa_handler = [](int) {}; // without SA_RESTART
        sigaction(SIGALRM, &action, nullptr);
        const itimerval once = {{0, 0}, {0, 20000}};
        setitimer(ITIMER_REAL, &once, nullptr);
    };
    EXPECT_EQ(Ask("n\n", raiseSoon, std::chrono::milliseconds(100)).answer, platform::answerNo);
}

TEST(QuestionPosix, WithoutATerminalNobodyIsAsked) {
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        EndChild(platform::AskYesNo(L"Go on?", L"Caption"));
    }
    EXPECT_EQ(StatusOf(child), otherAnswer);
}

TEST(QuestionPosix, InTheBackgroundNobodyIsAsked) {
    const Dialogue dialogue = Ask("y\n", [] {
        const pid_t background = fork();
        if (background != 0)
            EndChild(StatusOf(background));
        setpgid(0, 0);
    });
    EXPECT_EQ(dialogue.answer, otherAnswer);
    EXPECT_EQ(dialogue.screen.find("Go on?"), std::string::npos);
}

TEST(EndAfterFaultPosix, TheStatusIsThree) {
    EXPECT_EXIT(platform::EndAfterFault(), testing::ExitedWithCode(3), "");
}

TEST(EndAfterFaultPosix, WhatWasPrintedBeforeIsNotLost) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[1]);
        platform::WriteToStandardOutput(L"before");
        platform::EndAfterFault();
    }
    close(ends[1]);
    EXPECT_EQ(ReadToEnd(ends[0]), "before");
    EXPECT_EQ(StatusOf(child), 3);
    close(ends[0]);
}

TEST(EndAfterFaultPosix, AHandlerOfTheAbortSignalIsCalledFirst) {
    EXPECT_EXIT(
        {
            std::signal(SIGABRT, [](int) {
                [[maybe_unused]] const auto written = write(STDERR_FILENO, "handled", 7);
                SaveCoverage();
            });
            platform::EndAfterFault();
        },
        testing::ExitedWithCode(3), "^handled$");
}

TEST(EndAfterFaultPosix, AnIgnoredAbortSignalIsNoHandler) {
    EXPECT_EXIT(
        {
            std::signal(SIGABRT, SIG_IGN);
            platform::EndAfterFault();
        },
        testing::ExitedWithCode(3), "");
}

} // namespace
