#pragma once
// A long-idle process gives back the pages of its program and libraries that it read
// to start: the kernel drops them from memory now rather than under pressure, and reads
// back from the page cache whatever is used again.
namespace steward {

/// Asks the kernel to page out this process's read-only file mappings. Returns the
/// number of mappings it asked for; does nothing where the kernel can't.
int releaseIdlePages();

} // namespace steward
