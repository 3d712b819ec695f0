#pragma once

/// Forward declarations of the classes of vxfile.

namespace vxfile {

class AtomicFile;
class DescriptorSink;
class InputFile;

enum class EFileForm;
enum class EKeyFormat;

struct AtomicFileOptions;
struct DescriptorSinkOptions;
struct InputFileOptions;
struct ReadFileOptions;
struct ReadKeyOptions;
struct WriteFileOptions;
struct WriteKeyOptions;

} // namespace vxfile
