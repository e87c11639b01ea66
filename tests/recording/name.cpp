// A library of this name has no code of its own: it leads to the one that records.
extern const char recordingName[] = "recording";
