#include "InspectTools.h"

#include "Progress.h"

#include <gmock/gmock.h>

#if !defined(_WIN32)
#    include <cstdlib>
#    include <fcntl.h>
#    include <sys/wait.h>
#    include <unistd.h>
#endif

namespace Inspect::Testing
{

using ::testing::HasSubstr;

class Progress : public InspectProgram
{
protected:
    Progress()
    {
        std::string sheet = "{\"style\": {\"S\": {}";
        for (int number = 0; number < 6000; ++number)
        {
            sheet += ", \"S" + std::to_string(number) + "\": {\"level\": \"2\"}";
        }
        Write("large.json", sheet + "}}");
    }
};

TEST_F(Progress, IsNotWrittenWhereNobodySeesIt)
{
    const Answer answer = RunBare({"--schema", "schema.json", "check", "large.json"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.status, 0);

    std::ostringstream err;
    Inspect::Progress progress(err);
    progress.Begin("work", 100000);
    progress.Step();
    progress.End();
    EXPECT_EQ(err.str(), "");
}

#if !defined(_WIN32)

/// What a program writes to its standard error when that is a terminal.
std::string ErrorsAtTerminal(const std::string& command)
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0)
    {
        ADD_FAILURE() << "there is no terminal";
        return "";
    }
    const std::string path = ptsname(terminal);
    const pid_t child = fork();
    if (child == 0)
    {
        execl("/bin/sh", "sh", "-c", (command + " 2>" + path).c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    const int end = open(path.c_str(), O_RDWR | O_NOCTTY); // keeps the terminal open until the child has ended
    std::string text;
    int status = 0;
    EXPECT_EQ(fcntl(terminal, F_SETFL, O_NONBLOCK), 0);
    for (bool hasEnded = false;;)
    {
        char block[4096];
        const ssize_t count = read(terminal, block, sizeof block);
        if (count > 0)
        {
            text.append(block, static_cast<std::size_t>(count));
        }
        else if (hasEnded)
        {
            break;
        }
        else
        {
            hasEnded = waitpid(child, &status, WNOHANG) == child;
            usleep(1000);
        }
    }
    close(end);
    close(terminal);
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 0);
    return text;
}

TEST_F(Progress, IsShownAtATerminalAndTakenAway)
{
    const std::string start = "cd " + Support::ForShell(m_folder.GetPath().string()) + " && " +
                              Support::ForShell(STYLES_INSPECT_PROGRAM) + " --schema schema.json check ";
    const std::string text = ErrorsAtTerminal(start + "large.json >/dev/null");
    EXPECT_THAT(text, HasSubstr("\rchecking ... 50 %"));
    EXPECT_THAT(text, HasSubstr("\rreading ..."));
    EXPECT_THAT(text, HasSubstr("\rcomparing ... 100 %"));
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.back(), '\r');
    EXPECT_EQ(text.find('\n'), std::string::npos);

    EXPECT_EQ(ErrorsAtTerminal(start + "sheet.json >/dev/null"), "") << "short work is not worth a line";
}

#endif

} // namespace Inspect::Testing
