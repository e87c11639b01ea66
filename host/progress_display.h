// Shows how far long operations are.
#pragma once

// From now on, on the standard error stream: a bar with rate and time left on a terminal, plain lines elsewhere.
void showProgress();
