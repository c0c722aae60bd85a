#pragma once

/// Lets assistive technology read and write a VerifyNumInputWidget as one text field: speech input
/// and on-screen keyboards put the whole code in. The cells stay its children. Call before the
/// first widget is described; any number of times. GUI thread.
void describeCodesToAssistants();
