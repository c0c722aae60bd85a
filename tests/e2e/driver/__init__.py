"""A person in front of the client: the desktop, the installed programs, the service, the tray."""
