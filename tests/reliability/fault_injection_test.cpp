// Saving under faults, in every file form a parameter set saves: a folder it
// may not write to, a full disk (RLIMIT_FSIZE) and a process killed in the
// middle of saving. The old file always stays whole and a failed save says so.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "parameters/persistence_test_support.h"

namespace {

using namespace persistence_test;

// Every form chosen by extension: XML, folder stream, INI, CSV.
const char* const kExtensions[] = {"xml", "tab", "ini", "mcsv"};

SmartPtr<IParametersCreatable> NumberedSet(int count) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  for (int i = 0; i < count; ++i) set->Add(MakeString(L"p" + std::to_wstring(i)).get(), MakeLong(i).get(), nullptr, 0);
  return set;
}

HRESULT SaveTo(IParametersCreatable* set, const std::string& path) { return ArchiveOf(set, path)->Save(); }

// Runs `body` in a child process and answers its exit code (-signal when it was killed).
template <class Body>
int InChild(Body body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

class FaultInjection : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    folder = ScratchFolder(std::string("fault-") + GetParam());
    path = folder + "/set." + GetParam();
    ASSERT_EQ(SaveTo(NumberedSet(3).get(), path), S_OK);
    old = FileBytes(path);
    ASSERT_FALSE(old.empty());
  }
  // The old file unchanged and nothing else left in its folder.
  void ExpectOldFileAlone() {
    EXPECT_EQ(FileBytes(path), old);
    std::error_code ignored;
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder, ignored), {}), 1) << "no temporary left";
  }
  std::string folder, path, old;
};

TEST_P(FaultInjection, FolderNotWritable) {
  SmartPtr<IParametersCreatable> bigger = NumberedSet(50);
  std::filesystem::permissions(folder, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
  // Permissions do not stop the super-user: the child gives its rights up first.
  EXPECT_EQ(InChild([&] {
              if (geteuid() == 0 && setuid(65534) != 0) return 2;
              return SaveTo(bigger.get(), path) < 0 ? 0 : 1;
            }),
            0);
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
  ExpectOldFileAlone();
}

TEST_P(FaultInjection, DiskFull) {
  SmartPtr<IParametersCreatable> bigger = NumberedSet(500);
  EXPECT_EQ(InChild([&] {
              std::signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{256, 256};
              setrlimit(RLIMIT_FSIZE, &limit);
              return SaveTo(bigger.get(), path) < 0 ? 0 : 1;
            }),
            0);
  ExpectOldFileAlone();
}

// The child saves a large set again and again until it is killed; the file is
// then the old one or the complete new one, never a mixture or a part.
TEST_P(FaultInjection, KilledWhileSaving) {
  SmartPtr<IParametersCreatable> bigger = NumberedSet(20000);
  const std::string complete = folder + "/complete." + GetParam();
  ASSERT_EQ(SaveTo(bigger.get(), complete), S_OK);
  const std::string expectedNew = FileBytes(complete);
  std::filesystem::remove(complete);
  int started[2];
  ASSERT_EQ(pipe(started), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(started[0]);
    if (write(started[1], "s", 1) != 1) _exit(2);
    for (;;) SaveTo(bigger.get(), path);
  }
  close(started[1]);
  char byte = 0;
  ASSERT_EQ(read(started[0], &byte, 1), 1);
  close(started[0]);
  usleep(20000);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  const std::string now = FileBytes(path);
  EXPECT_TRUE(now == old || now == expectedNew) << "file of " << now.size() << " bytes";
}

INSTANTIATE_TEST_SUITE_P(EveryForm, FaultInjection, ::testing::ValuesIn(kExtensions));

}  // namespace
