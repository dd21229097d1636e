"""The pictures, sounds and documents of the sample film."""
