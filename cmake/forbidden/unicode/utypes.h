#error "The core includes no toolkit: a display is reached through Platform/."
