/* Work in a process of its own. */
#ifndef VAULTPAD_TOOLS_CHILD_JOB_H
#define VAULTPAD_TOOLS_CHILD_JOB_H

#include <sys/types.h>

#include <functional>
#include <string>

namespace vaultpad::tools {

/*
 * A forked child that works and hands a text back. Toolkit, fonts and catalogues take the language once per process, so
 * what is drawn in several languages, or again after a change, is drawn in a child each. The parent must not have
 * initialised the toolkit.
 */
class ChildJob {
public:
    /* Starts the work at once. Throws std::system_error. */
    explicit ChildJob(const std::function<std::string()>& work);
    ~ChildJob();
    ChildJob(ChildJob&& other) noexcept;
    ChildJob& operator=(ChildJob&&) = delete;

    /* Becomes readable, for poll(), when the child has finished or has much to say. */
    int descriptor() const { return descriptor_; }

    /* Waits for the text; call once. Throws what the work threw, UsageError or std::runtime_error. */
    std::string result();

private:
    pid_t child_ = -1;
    int descriptor_ = -1;
};

}  // namespace vaultpad::tools

#endif
