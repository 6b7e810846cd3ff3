#ifndef COREQT_TOOL_FILENAMES_H
#define COREQT_TOOL_FILENAMES_H

namespace tool
{

/**
 * Makes every file name given on the command line reach the file system byte for byte. Qt decodes
 * arguments and file names with the locale's codec, UTF-8 on Debian even in the C locale, which
 * turns bytes that are not UTF-8 into U+FFFD for good. Call it once, before reading the arguments:
 * it installs, in place of a UTF-8 locale codec, one that keeps each such byte as U+DC80..U+DCFF,
 * so that QFile::decodeName() and QFile::encodeName() give back the same bytes.
 */
void keepFileNameBytes();

} // namespace tool

#endif // COREQT_TOOL_FILENAMES_H
