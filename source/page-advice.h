/* Memory in large pages: a page's first touch costs a fault, which takes longer than what is done with the page. */
#ifndef VAULTPAD_SOURCE_PAGE_ADVICE_H
#define VAULTPAD_SOURCE_PAGE_ADVICE_H

#include <cstddef>

namespace vaultpad {

/*
 * For a block from malloc() that is filled as a whole: makes its pages at once, in huge ones where the system has them.
 * Returns whether it has. Changes nothing but the time.
 */
bool makePages(void* block, std::size_t bytes);

/*
 * Lets the heap grow by huge pages for the next 15 MiB, which is what the images of a keyboard take. Nothing stays
 * allocated. The C library's threshold for mapping blocks singly rises to that of a block of `bytes` that was freed, as
 * it does by itself when such a block is freed.
 */
void growHeapInHugePages(std::size_t bytes);

}  // namespace vaultpad

#endif
