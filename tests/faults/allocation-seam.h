/* Every operator new of the test program, and every malloc() and calloc() of the library, under a test's control. */
#ifndef VAULTPAD_TESTS_FAULTS_ALLOCATION_SEAM_H
#define VAULTPAD_TESTS_FAULTS_ALLOCATION_SEAM_H

namespace vaultpad::test {

/*
 * While one lives, the allocations that the library's code asks for are counted, on all threads; those of the doubles
 * and of other libraries are not. A string's or a list's allocation counts for who uses the string. The nth fails.
 */
class AllocationWatch {
public:
    explicit AllocationWatch(int nth);
    ~AllocationWatch();
    AllocationWatch(const AllocationWatch&) = delete;
    AllocationWatch& operator=(const AllocationWatch&) = delete;

    int counted() const;
    bool hasFailed() const;
};

/* Starts or stops the count; see watched(). */
void watchAllocations(bool watch);

/* While one lives, its thread runs no code of the library. */
class OutsideLibrary {
public:
    OutsideLibrary();
    ~OutsideLibrary();
    OutsideLibrary(const OutsideLibrary&) = delete;
    OutsideLibrary& operator=(const OutsideLibrary&) = delete;
};

/* Runs a call of the library: only meanwhile does a watch count. */
template <typename Call>
auto watched(Call call) {
    struct Watching {
        Watching() { watchAllocations(true); }
        ~Watching() { watchAllocations(false); }
    } const watching;
    return call();
}

}  // namespace vaultpad::test

#endif
