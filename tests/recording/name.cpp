// A library of this name has no code of its own: it leads to the one that records.
__attribute__((used)) static const char recordingName[] = "recording";
