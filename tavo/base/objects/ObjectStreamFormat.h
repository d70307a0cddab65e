#pragma once

// The words of the text of an object stream, for the stream that writes it and the one that reads it.
namespace tavo::object_stream {

inline constexpr char FORMAT_KEY[] = "format";
inline constexpr char VERSION_KEY[] = "version";
inline constexpr char OBJECTS_KEY[] = "objects";
inline constexpr char CLASS_KEY[] = "class";
inline constexpr char PARTS_KEY[] = "parts";
inline constexpr char PROPERTIES_KEY[] = "properties";

inline constexpr char FORMAT[] = "tavo objects";
inline constexpr int VERSION = 1;

} // namespace tavo::object_stream
